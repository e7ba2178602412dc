#include "stores.h"

#include <mailserver-log/db/emaillog/mail_log_db.h>
#include <mailserver-log/db/provider.h>
#include <mailserver-log/db/securitylog/security_log_db.h>
#include <mailserver-log/db/store_traits.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "db/store_schema.h"
#include "raw_database.h"

namespace bench {

namespace {

using MailTraits = serverlog::db::StoreTraits<serverlog::db::MailLogDB>;

constexpr int kFirstDate = 1'790'000'000;
constexpr int kDay = 86'400;
constexpr int kDays = 90;
constexpr int kMailsToAThreat = 10;

// Row i of n: dates rise from `first` over `seconds` with ties, of a hundred rows one status is
// rare and one very rare, and every address has the same number of rows, spread over the file.
std::string InsertRows(int rows, int first, int seconds, int addresses) {
    const std::string address = " % " + std::to_string(addresses) + ") || '@example.org'";
    return "WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i + 1 < " +
           std::to_string(rows) +
           ") INSERT INTO mail_log_table (date, size, status, host, "
           "mail_from, mail_to, message_id, ori_mail_to, queue_id, subject) SELECT " +
           std::to_string(first) + " + i * " + std::to_string(seconds) + " / " +
           std::to_string(rows) +
           ", (i * 7919) % 3000000, CASE WHEN i % 1000 = 7 THEN 4 "
           "WHEN i % 100 < 3 THEN 2 WHEN i % 4 = 1 THEN 1 ELSE 0 END, 'mail.example.com', "
           "'user' || (i * 7919" +
           address + ", 'user' || (i * 104729" + address +
           ", "
           "'<' || hex(randomblob(12)) || '@mail.example.com>', "
           "CASE WHEN i % 3 = 0 THEN '' ELSE 'user' || (i * 1299709" +
           address +
           " END, "
           "hex(randomblob(5)), 'Offer ' || (i * 31 % 300000) || ' for next week' FROM n;";
}

std::string InsertSecurityRows(int rows, int first, int seconds, int addresses) {
    const std::string address = " % " + std::to_string(addresses);
    return "WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i + 1 < " +
           std::to_string(rows) +
           ") INSERT INTO security_log_table (date, src, type, event, host, sender, recipient, "
           "subject) SELECT " +
           std::to_string(first) + " + i * " + std::to_string(seconds) + " / " +
           std::to_string(rows) + ", '192.0.2.' || (i * 7919) % 250" +
           ", CASE i % 5 WHEN 0 THEN 'spam' WHEN 1 THEN 'virus' ELSE 'reject' END, 'refused', "
           "'mail.example.com', 'user' || (i * 7919)" +
           address + " || '@example.net', 'user' || (i * 104729)" + address +
           " || '@example.org', 'Offer ' || i FROM n;";
}

template <class DB>
void MakeFile(const std::string& path, const std::string& insert) {
    std::filesystem::remove(path);
    { auto store = serverlog::db::Provider(path).Get<DB>(false); }
    RawDatabase file(path);
    const auto& schema = serverlog::db::internal::SchemaOf<DB>();
    // All indices are built behind the rows, which is many times faster.
    const auto in_main = [](const std::string& script) {
        return serverlog::utils::Replace(script, serverlog::db::internal::kSchemaPlaceholder,
                                         "main");
    };
    file.Run("PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF;" +
             in_main(schema.DropIndicesBut("")) + insert + in_main(schema.CreateAllIndices()));
}

template <class DB>
void MakeFiles(const StoreSizes& sizes, std::string insert(int, int, int, int)) {
    using Traits = serverlog::db::StoreTraits<DB>;
    const std::string wanted = std::to_string(sizes.current_rows) + " " +
                               std::to_string(sizes.long_term_rows) + " " +
                               std::to_string(sizes.addresses);
    const std::string note_path = Traits::kPath + std::string(".sizes");
    std::string found;
    std::getline(std::ifstream(note_path) >> std::ws, found);
    if (found == wanted) {
        return;
    }
    MakeFile<DB>(Traits::kMainPath,
                 insert(sizes.long_term_rows, kFirstDate, kDays * kDay, sizes.addresses));
    MakeFile<DB>(Traits::kPath,
                 insert(sizes.current_rows, kFirstDate + kDays * kDay, kDay, sizes.addresses));
    std::ofstream(note_path) << wanted;
}

}  // namespace

const std::string kCurrentPath = MailTraits::kPath;
const std::string kLongTermPath = MailTraits::kMainPath;

StoreSizes& Sizes() {
    static StoreSizes sizes;
    return sizes;
}

void MakeStores() {
    MakeFiles<serverlog::db::MailLogDB>(Sizes(), InsertRows);
}

void MakeSecurityStores() {
    StoreSizes sizes = Sizes();
    sizes.current_rows /= kMailsToAThreat;
    sizes.long_term_rows /= kMailsToAThreat;
    MakeFiles<serverlog::db::SecurityLogDB>(sizes, InsertSecurityRows);
}

long EndOfRows() {
    return kFirstDate + (kDays + 1L) * kDay;
}

}  // namespace bench
