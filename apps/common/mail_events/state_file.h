#pragma once

#include <mailserver-log/db/store_traits.h>

#include <string>

/// The state of the collector of mail events: an SQLite file beside the stores. docs/formats.md
/// tells it too.
///
/// What the collector puts into the stores, for whoever looks for the way of one mail:
///
/// - A mail row has the queue id of the line that told the fate. A mail that went through a content
///   filter, or was forwarded, has several queue ids and one message id; the table `joined` leads
///   from each to the next.
/// - `message_id` is as the log has it, with its angle brackets. Addresses have none, and their
///   domains are in their Unicode form.
/// - A security row has no column for a queue id. Its `event` is the text of the log line, which
///   starts with the queue id, or holds it, where the mail had one already.
/// - `host` is the host that logged the line. A queue id means something on that host only.
namespace serverlog::program::state_file {

inline const std::string kPath = std::string(db::kSpoolFolder) + "mail_events.db";

/// PRAGMA user_version of the file.
inline constexpr int kVersion = 1;

/// Makes the tables. Times are seconds since the epoch.
///
/// mail: the mails in flight. `date` is the stamp of the newest line about it, `client` the address
/// that it came from, `is_local` whether it came from this host.
/// recipient: the recipients of these that were deferred (`is_deferred`), or whose original address
/// is known from an earlier queue id.
/// joined: a queue id and the one that the same mail got next, from a content filter or by
/// forwarding, or the notification that it caused. Outlives the mail.
/// stored: what was stored in the stores already, so that a log that is read again doubles nothing.
/// `date` is the row's, `fingerprint` a keyed hash of the line, `stored_at` when it was stored.
/// total: counts by name: lines, mail, security, skipped, unreadable; and newest_line, the stamp
/// of the last line, and read_at, when that was read; and the key of the fingerprints, in two
/// halves.
/// skipped: lines that gave nothing, by program.
inline constexpr char kCreateScript[] = R"(
CREATE TABLE mail (
    host TEXT NOT NULL,
    queue_id TEXT NOT NULL,
    date INTEGER NOT NULL,
    message_id TEXT NOT NULL,
    mail_from TEXT NOT NULL,
    client TEXT NOT NULL,
    size INTEGER NOT NULL,
    subject TEXT NOT NULL,
    is_local INTEGER NOT NULL,
    PRIMARY KEY (host, queue_id)) WITHOUT ROWID;
CREATE INDEX mail_date_idx ON mail (date);
CREATE INDEX mail_message_id_idx ON mail (message_id, host);
CREATE TABLE recipient (
    host TEXT NOT NULL,
    queue_id TEXT NOT NULL,
    mail_to TEXT NOT NULL,
    ori_mail_to TEXT NOT NULL,
    is_deferred INTEGER NOT NULL,
    PRIMARY KEY (host, queue_id, mail_to, ori_mail_to)) WITHOUT ROWID;
CREATE TRIGGER mail_recipients AFTER DELETE ON mail BEGIN
    DELETE FROM recipient WHERE host = OLD.host AND queue_id = OLD.queue_id;
END;
CREATE TABLE joined (
    host TEXT NOT NULL,
    first_queue_id TEXT NOT NULL,
    second_queue_id TEXT NOT NULL,
    date INTEGER NOT NULL,
    PRIMARY KEY (host, first_queue_id, second_queue_id)) WITHOUT ROWID;
CREATE INDEX joined_second_queue_id_idx ON joined (second_queue_id);
CREATE INDEX joined_date_idx ON joined (date);
CREATE TABLE stored (
    date INTEGER NOT NULL,
    fingerprint INTEGER NOT NULL,
    stored_at INTEGER NOT NULL,
    PRIMARY KEY (date, fingerprint)) WITHOUT ROWID;
CREATE TABLE total (
    name TEXT NOT NULL PRIMARY KEY,
    value INTEGER NOT NULL) WITHOUT ROWID;
CREATE TABLE skipped (
    program TEXT NOT NULL PRIMARY KEY,
    lines INTEGER NOT NULL) WITHOUT ROWID;
)";

}  // namespace serverlog::program::state_file
