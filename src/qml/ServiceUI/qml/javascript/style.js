.pragma library

// The service menu's look. Sizes of text are in points, all others in pixels.

var MERIVON_MENU_WIDTH = 800;
var MERIVON_MENU_HEIGHT = 510;
var MENU_PADDING = 25; // around the centre menu area
var MENU_BORDER_COLOR = "white";
var MENU_BORDER_COLOR = "orange"; // kept beside the first: this second value is the one in force
var MENU_BORDER_WIDTH = 1;
var ACTION_BUTTON_MARGIN = 15;
var RADIO_BUTTON_SPACING = 12;

var ABS_BLUE = "#ff00aeef"; // pressed
var ABS_POPUP_TRANSPARENT = "#CC000000";
var ABS_POPUP_ACCENT_COLOR = "#5500aeef";
var ABS_COLOR_DEFAULT_BKGND = "#7a7b7a";
var BORDER_COLOR = "#7a7b7a";
var TRASH_COLOR_1 = "#88FF0000";
var TRASH_COLOR_2 = "#FFFF0000";

var ABS_TEXT_COLOR = "#7a7b7a";
var ABS_H1_TEXT_COLOR = "white";
var ABS_H1_TEXT_SIZE = 20;
var ABS_H2_TEXT_COLOR = "white";
var ABS_H2_TEXT_SIZE = 14;
var ABS_H3_TEXT_COLOR = "white";
var ABS_H3_TEXT_SIZE = 12;
var ABS_H3_TEXT_BOLD = true;
var ABS_H4_TEXT_SIZE = 10;
var ABS_H4_TEXT_BOLD = true;
var ABS_H4_TEXT_COLOR = "white";

var LIST_HEADER_HIGHLIGHT_COLOR = "white";
var LIST_HEADER_FILL_COLOR = "#CCCCCC";
var LIST_ROW_HEIGHT = 26;
var LIST_BORDER_COLOR = "#7a7b7a";
var LIST_BACKGROUND_COLOR = "white";
var LIST_FONT_COLOR = "black";
var LIST_FONT_SIZE = 9;

var BUTTON_RADIUS = 5;
