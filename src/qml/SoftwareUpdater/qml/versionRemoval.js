.pragma library

// Nothing in this name means anything to a shell. Behind the store's path a leading "-" is no
// option and a "~" no home folder; the latter is left to the quotes all the same.
function isPlainShellWord(name) {
    return /^[A-Za-z0-9_@%+=:,.\-\u00a1-\uffff]+$/.test(name);
}

function quoted(name) { return "'" + name.replace(/'/g, "'\\''") + "'"; }

// Why a folder of this name must not be removed, "" where it may: each of these names would take
// the whole store or something outside it.
function refusal(version) {
    if (version === "")
        return "no version named";
    if (version === "." || version === "..")
        return "not a version: " + version;
    if (version.indexOf("/") !== -1)
        return "not in the versions store: " + version;
    return "";
}

// The shell line that removes exactly this version's folder from the store.
function command(version) {
    return "rm -rf /opt/Merivon/Versions/" + (isPlainShellWord(version) ? version : quoted(version));
}
