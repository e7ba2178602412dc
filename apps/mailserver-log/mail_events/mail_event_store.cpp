#include "mail_events/mail_event_store.h"

#include <mailserver-log/db/crea_table.h>
#include <mailserver-log/record/columns.h>

#include <algorithm>
#include <ctime>
#include <random>
#include <utility>

#include "mail_events/mail_event_files.h"
#include "stores/statement.h"

namespace serverlog::program {

namespace {

constexpr std::int64_t kLongestMemory = 7L * 86400;  // of what was stored
constexpr std::int64_t kBetweenForgetting = 3600;

SipKey RandomKey() {
    std::random_device device;
    const auto half = [&device] { return (static_cast<std::uint64_t>(device()) << 32) | device(); };
    return {half(), half()};
}

template <class Record>
std::string InsertInto(const std::string& table) {
    const std::vector<std::string> columns = record::ColumnNames<Record>();
    return "INSERT INTO " + table + " " + db::internal::fields_to_str(columns) +
           db::internal::fields_to_values_str(columns);
}

template <class Record>
void Insert(Statement& statement, const Record& row) {
    int parameter = 0;
    record::ForEachColumn<Record>(
        [&](const auto& column) { statement.Bind(++parameter, row.*column.member); });
    statement.Run();
}

// Deletes the oldest rows of a table until `most` are left.
std::string DeleteOldest(const std::string& table, const std::string& key) {
    return "DELETE FROM " + table + " WHERE (" + key + ") IN (SELECT " + key + " FROM " + table +
           " ORDER BY date LIMIT MAX(0, (SELECT COUNT(*) FROM " + table + ") - ?))";
}

}  // namespace

/// The open files and their statements, which must be gone before the files are closed.
struct MailEventStore::Open {
    explicit Open(const SipKey& new_key) : files(new_key) {}

    Statement Prepare(const std::string& sql) const { return {files.Handle(), sql}; }

    template <class Record>
    std::uint64_t StoreRows(const std::vector<Event<Record>>& events, Statement& insert);
    void SaveMail(const std::string& host, const std::string& queue_id, const Mail* mail);
    void SaveMails(const MailsInFlight& mails);
    void Prune(std::int64_t newest_line);
    void Count(const MailEventBatch& batch, const Counts& stored);
    void ForgetStored();

    MailEventFiles files;
    std::int64_t next_forgetting = 0;

    Statement load_mail = Prepare(
        "SELECT date, message_id, mail_from, client, size, subject, is_local FROM mail "
        "WHERE host = ? AND queue_id = ?");
    Statement load_recipients = Prepare(
        "SELECT mail_to, ori_mail_to, is_deferred FROM recipient "
        "WHERE host = ? AND queue_id = ?");
    Statement load_joined = Prepare(
        "SELECT second_queue_id FROM joined WHERE host = ? AND first_queue_id = ? ORDER BY date");
    Statement find_message = Prepare(
        "SELECT queue_id FROM mail WHERE host = ? AND message_id = ? ORDER BY date LIMIT 1");
    Statement remove_mail = Prepare("DELETE FROM mail WHERE host = ? AND queue_id = ?");
    Statement save_mail = Prepare(
        "INSERT INTO mail (host, queue_id, date, message_id, mail_from, client, size, subject, "
        "is_local) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)");
    Statement save_recipient = Prepare(
        "INSERT OR REPLACE INTO recipient (host, queue_id, mail_to, ori_mail_to, is_deferred) "
        "VALUES (?, ?, ?, ?, ?)");
    Statement save_joined = Prepare(
        "INSERT OR REPLACE INTO joined (host, first_queue_id, second_queue_id, date) "
        "VALUES (?, ?, ?, ?)");
    Statement remember_stored =
        Prepare("INSERT OR IGNORE INTO stored (date, fingerprint, stored_at) VALUES (?, ?, ?)");
    Statement forget_stored = Prepare("DELETE FROM stored WHERE stored_at < ?");
    Statement prune_mails = Prepare("DELETE FROM mail WHERE date < ?");
    Statement limit_mails = Prepare(DeleteOldest("mail", "host, queue_id"));
    Statement prune_joined = Prepare("DELETE FROM joined WHERE date < ?");
    Statement limit_joined =
        Prepare(DeleteOldest("joined", "host, first_queue_id, second_queue_id"));
    Statement add_total = Prepare(
        "INSERT INTO total (name, value) VALUES (?1, ?2) "
        "ON CONFLICT (name) DO UPDATE SET value = value + ?2");
    Statement set_total = Prepare("INSERT OR REPLACE INTO total (name, value) VALUES (?, ?)");
    Statement add_skipped = Prepare(
        "INSERT INTO skipped (program, lines) VALUES (?1, ?2) "
        "ON CONFLICT (program) DO UPDATE SET lines = lines + ?2");
    Statement insert_mail = Prepare(
        InsertInto<record::MailLog>(std::string(MailEventFiles::kMail) + "." + files.MailTable()));
    Statement insert_security = Prepare(InsertInto<record::SecurityLog>(
        std::string(MailEventFiles::kSecurity) + "." + files.SecurityTable()));
};

MailEventStore::MailEventStore() : key_(RandomKey()) {}

MailEventStore::~MailEventStore() = default;

template <class Action>
auto MailEventStore::With(Action&& action) {
    if (open_ && !open_->files.InPlace()) {
        open_.reset();
    }
    if (!open_) {
        open_ = std::make_unique<Open>(key_);
    }
    try {
        return action(*open_);
    } catch (...) {
        open_.reset();
        throw;
    }
}

SipKey MailEventStore::Key() {
    return key_ = With([](Open& open) {
               Statement halves = open.Prepare(
                   "SELECT value FROM total WHERE name IN ('key_0', 'key_1') ORDER BY name");
               SipKey key = {};
               for (std::uint64_t& half : key) {
                   halves.Next();
                   half = static_cast<std::uint64_t>(halves.Number(0));
               }
               return key;
           });
}

std::optional<Mail> MailEventStore::Load(std::string_view host, std::string_view queue_id) {
    return With([&](Open& open) -> std::optional<Mail> {
        Statement& found = open.load_mail.Bind(1, host).Bind(2, queue_id);
        if (!found.Next()) {
            found.Reset();
            return std::nullopt;
        }
        Mail mail;
        mail.host = host;
        mail.queue_id = queue_id;
        mail.date = found.Number(0);
        mail.message_id = found.Text(1);
        mail.mail_from = found.Text(2);
        mail.client = found.Text(3);
        mail.size = static_cast<std::int32_t>(found.Number(4));
        mail.subject = found.Text(5);
        mail.is_local = found.Number(6) != 0;
        found.Reset();
        Statement& recipients = open.load_recipients.Bind(1, host).Bind(2, queue_id);
        while (recipients.Next()) {
            mail.recipients.push_back(
                {recipients.Text(0), recipients.Text(1), recipients.Number(2) != 0});
        }
        recipients.Reset();
        Statement& joined = open.load_joined.Bind(1, host).Bind(2, queue_id);
        while (joined.Next()) {
            mail.next_queue_ids.push_back(joined.Text(0));
        }
        joined.Reset();
        return mail;
    });
}

std::optional<std::string> MailEventStore::FindMessage(std::string_view host,
                                                       std::string_view message_id) {
    return With([&](Open& open) -> std::optional<std::string> {
        Statement& found = open.find_message.Bind(1, host).Bind(2, message_id);
        std::optional<std::string> queue_id;
        if (found.Next()) {
            queue_id = found.Text(0);
        }
        found.Reset();
        return queue_id;
    });
}

Counts MailEventStore::Commit(const MailEventBatch& batch, const MailsInFlight& mails) {
    return With([&](Open& open) {
        open.files.Run("BEGIN");
        Counts stored;
        stored.mail = open.StoreRows(batch.mail, open.insert_mail);
        stored.security = open.StoreRows(batch.security, open.insert_security);
        open.SaveMails(mails);
        open.Prune(batch.newest_line);
        open.Count(batch, stored);
        open.ForgetStored();
        open.files.Run("COMMIT");
        return stored;
    });
}

template <class Record>
std::uint64_t MailEventStore::Open::StoreRows(const std::vector<Event<Record>>& events,
                                              Statement& insert) {
    const std::time_t now = std::time(nullptr);
    std::uint64_t count = 0;
    for (const Event<Record>& event : events) {
        remember_stored.Bind(1, event.row.date).Bind(2, event.fingerprint).Bind(3, now).Run();
        if (sqlite3_changes(files.Handle()) > 0) {
            Insert(insert, event.row);
            ++count;
        }
    }
    return count;
}

void MailEventStore::Open::SaveMails(const MailsInFlight& mails) {
    mails.VisitChanged([this](const std::string& host, const std::string& queue_id,
                              const Mail* mail) { SaveMail(host, queue_id, mail); });
    for (const MailsInFlight::Joined& joined : mails.NewlyJoined()) {
        save_joined.Bind(1, joined.host)
            .Bind(2, joined.first_queue_id)
            .Bind(3, joined.second_queue_id)
            .Bind(4, joined.date)
            .Run();
    }
}

void MailEventStore::Open::SaveMail(const std::string& host, const std::string& queue_id,
                                    const Mail* mail) {
    // Its recipients go with it.
    remove_mail.Bind(1, host).Bind(2, queue_id).Run();
    if (mail == nullptr) {
        return;
    }
    save_mail.Bind(1, host)
        .Bind(2, queue_id)
        .Bind(3, mail->date)
        .Bind(4, mail->message_id)
        .Bind(5, mail->mail_from)
        .Bind(6, mail->client)
        .Bind(7, mail->size)
        .Bind(8, mail->subject)
        .Bind(9, mail->is_local)
        .Run();
    for (const Recipient& recipient : mail->recipients) {
        save_recipient.Bind(1, host)
            .Bind(2, queue_id)
            .Bind(3, recipient.mail_to)
            .Bind(4, recipient.ori_mail_to)
            .Bind(5, recipient.is_deferred)
            .Run();
    }
}

// By the log's own time, so that a log of last year can be read as well. A wrong clock somewhere
// must not throw away what is in flight, though.
void MailEventStore::Open::Prune(std::int64_t newest_line) {
    const std::int64_t now = std::min<std::int64_t>(newest_line, std::time(nullptr));
    prune_mails.Bind(1, now - kLongestFlight).Run();
    prune_joined.Bind(1, now - kLongestFlight).Run();
    limit_mails.Bind(1, kMostMails).Run();
    limit_joined.Bind(1, kMostMails).Run();
}

void MailEventStore::Open::Count(const MailEventBatch& batch, const Counts& stored) {
    const auto add = [this](std::string_view name, std::uint64_t count) {
        add_total.Bind(1, name).Bind(2, static_cast<std::int64_t>(count)).Run();
    };
    add("lines", batch.counts.lines);
    add("mail", stored.mail);
    add("security", stored.security);
    add("skipped", batch.counts.skipped);
    add("unreadable", batch.counts.unreadable);
    for (const auto& [program, count] : batch.counts.skipped_by_program) {
        add_skipped.Bind(1, program).Bind(2, static_cast<std::int64_t>(count)).Run();
    }
    if (batch.newest_line > 0) {
        set_total.Bind(1, "newest_line").Bind(2, batch.newest_line).Run();
    }
    set_total.Bind(1, "read_at").Bind(2, std::time(nullptr)).Run();
}

void MailEventStore::Open::ForgetStored() {
    const std::int64_t now = std::time(nullptr);
    if (now >= next_forgetting) {
        forget_stored.Bind(1, now - kLongestMemory).Run();
        next_forgetting = now + kBetweenForgetting;
    }
}

}  // namespace serverlog::program
