#pragma once

namespace serverlog::program {

/// Nobody reads standard output any more: the program ends with status 1 and says nothing, since
/// whoever went away knows.
class ReaderGone {};

/// Keeps the process alive when the reader of its output goes away: writing then fails instead.
void IgnoreBrokenPipe();

/// Whether standard output is a pipe or socket that nobody reads any more.
bool ReaderHasGone();

}  // namespace serverlog::program
