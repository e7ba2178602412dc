#pragma once

/// @file
/// What went wrong last in a function of the platform's C library or of the mail server's libraries
/// that keeps it: each thread has its own, and success leaves it as it is. For messages only.

/// Its number, as errno(3) has them; 0 when nothing has gone wrong yet.
int MLIBCErrGet();

/// The source file that noticed it; empty when nothing has gone wrong yet. A literal.
const char* MLIBCErrorGetFile();

/// The line in that file; 0 when nothing has gone wrong yet.
int MLIBCErrorGetLine();
