#pragma once

// The updater's own version: what its banner, its application object and its scene show. It is not
// the version of the platform software that the dispenser runs.
inline constexpr char updaterVersion[] = "1.03.00";
