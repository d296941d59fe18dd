#pragma once

// What the scene will need, made beside the work that comes before it.
namespace Preload {

// Begins to set the fonts up on a thread of its own: fontconfig reads some eighty files, and is
// asked for the first text only. Returns at once. Who needs the fonts meanwhile sets them up as
// ever. To be called once.
void fonts();

} // namespace Preload
