#pragma once

#include <mlibc/sz_hash.h>

/// Notifies the administrator: writes the message to the mail log at notice level, and runs each
/// executable of the folder `/var/packages/PostCube-Server/etc/notify.d`, one after the other in
/// the order of their names. An executable gets the tag as its argument and the variables, a JSON
/// object in one line, on standard input; it has 10 s. One that fails or takes longer is told in
/// the mail log, and the others run all the same.
///
/// The message is that of the texts in the language "enu": section `notification`, keys
/// `<tag>_title` and `<tag>_body`, with each variable's value put for its name. Where there is no
/// such text, the tag stands for it.
///
/// @param tag          what happened
/// @param texts        folder of the texts, with a folder or file for each language
/// @param filter_file  not used here: what to do about a tag is up to the executables
/// @param variables    from name to value, both UTF-8; names stand in the texts as they stand here
/// @param flags        0; no flag is known, and any other value is refused
/// @return 1 when the message is in the mail log and each executable was started or there is none;
///         0 when an argument is refused or the folder of executables can't be read
///
/// Safe to call from several threads at once.
int MEROSysNotifySendNotificationCustomized(const char* tag, const char* texts,
                                            const char* filter_file, const MLIBCSzHash* variables,
                                            int flags);
