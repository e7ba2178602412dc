#include "mail_events/patient_store.h"

#include "mail_events/state_file.h"
#include "process/failure.h"

namespace serverlog::program {

template <class Read>
auto PatientStore::Try(Read&& read) {
    decltype(read()) result = {};
    if (!retry_.Run("read the state in " + state_file::kPath, [&] { result = read(); })) {
        throw Failure("stopped before the state in " + state_file::kPath + " could be read");
    }
    return result;
}

SipKey PatientStore::Key() {
    return Try([this] { return store_.Key(); });
}

std::optional<Mail> PatientStore::Load(std::string_view host, std::string_view queue_id) {
    return Try([&] { return store_.Load(host, queue_id); });
}

std::optional<std::string> PatientStore::FindMessage(std::string_view host,
                                                     std::string_view message_id) {
    return Try([&] { return store_.FindMessage(host, message_id); });
}

}  // namespace serverlog::program
