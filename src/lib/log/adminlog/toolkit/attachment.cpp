#include "log/adminlog/toolkit/attachment.h"

#include "log/adminlog/toolkit/reading.h"

namespace serverlog::log::adminlog {

std::string AttachmentName(Json::Value const& attachments, std::string const& id) {
    for (Json::Value const& attachment : attachments) {
        if (GetKeyVal(attachment, "id") == id) {
            return GetKeyVal(attachment, "name");
        }
    }
    return id;
}

}  // namespace serverlog::log::adminlog
