#pragma once

/// Gives the name of the PPPoE interface: the first by name of the network interfaces that the
/// kernel lists as point-to-point protocol links (`/sys/class/net/<name>/type` 512, ARPHRD_PPP).
///
/// @param buffer  receives the name with a terminating NUL
/// @param size    room in `buffer` in bytes, the NUL included
/// @return 0; -1 when there is none, the name does not fit or `buffer` is null. `buffer` is then
///         untouched.
///
/// Safe to call from several threads at once.
int MEROPPPoeIntfGet(char* buffer, int size);
