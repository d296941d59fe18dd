CREATE TABLE systemMessages(id INTEGER PRIMARY KEY, name TEXT, type TEXT, date TEXT, msg TEXT);
