.pragma library

// What a command that failed said last: the last line of its output, "" when that holds no "Error".
function complaint(output) {
    if (output.indexOf("Error") === -1)
        return "";
    // A command can print megabytes.
    var lines = output.slice(-1000).trim().split("\n");
    return lines[lines.length - 1].trim();
}
