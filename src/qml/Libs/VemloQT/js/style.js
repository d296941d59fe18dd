.pragma library

var BUTTON_RADIUS = 5;
