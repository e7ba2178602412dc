// Stores an event of a mail, and shows the newest ten to the same recipient.
//
//     mail_log SENDER RECIPIENT

#include <mailserver-log/db/emaillog/mail_log_db.h>
#include <mailserver-log/db/emaillog/mail_log_table.h>
#include <mailserver-log/db/provider.h>
#include <mailserver-log/db/store_traits.h>
#include <mailserver-log/exception/exception.h>
#include <merodbquery/condition.h>

#include <ctime>
#include <iostream>

int main(int count, char** arguments) {
    using namespace serverlog;
    if (count != 3) {
        std::cerr << "usage: mail_log SENDER RECIPIENT\n";
        return 2;
    }
    try {
        db::Provider provider(db::StoreTraits<db::MailLogDB>::kPath);
        auto store = provider.Get<db::MailLogDB>(false);
        db::MailLogTable table(store.GetSession());

        record::MailLog mail;
        mail.date = static_cast<std::int32_t>(std::time(nullptr));
        mail.mail_from = arguments[1];
        mail.mail_to = arguments[2];
        if (!table.Create(mail)) {
            std::cerr << "the mail log does not take the event: " << table.LastError() << '\n';
            return 1;
        }
        const auto recipient = merodbquery::Condition::Equal("mail_to", arguments[2]);
        const auto [total, mails] = table.UnionList(recipient, "date", "DESC", 0, 10, {"main"});
        std::cout << "events to " << arguments[2] << ": " << total << '\n';
        for (const record::MailLog& each : mails) {
            std::cout << "from " << each.mail_from << '\n';
        }
        return 0;
    } catch (const Exception<ETag::DB>& error) {
        std::cerr << exception_str(error) << '\n';
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
    }
    return 1;
}
