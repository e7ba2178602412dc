#pragma once

#include <string>

/// Gives the name of a user by number, from the system's user database (NSS).
///
/// @param id    number of the user
/// @param name  receives the login name
/// @return 0; -1 when there is no such user or the database cannot be read. `name` is then
///         untouched.
///
/// Safe to call from several threads at once.
int getRealUserName(unsigned int id, std::string& name);
