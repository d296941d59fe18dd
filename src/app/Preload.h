#pragma once

// What every start needs, whatever the settings say, and what can be made beside other work.
namespace Preload {

// Begins to set the fonts up on a thread of its own: fontconfig reads some eighty files, and is
// asked for the first text only, after all that a start does before its scene. Returns at once. Who
// needs the fonts meanwhile sets them up as ever. To be called once, when the keys of the database
// are there, whose derivation has use for two processors.
void fonts();

} // namespace Preload
