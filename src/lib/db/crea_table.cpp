#include <mailserver-log/db/crea_table.h>

#include "utils/strings.h"

namespace serverlog::db::internal {

std::string fields_to_str(const std::vector<std::string>& fields) {
    return "(" + utils::Join(fields, ", ") + ") ";
}

std::string fields_to_values_str(std::vector<std::string> fields) {
    for (std::string& field : fields) {
        field.insert(0, ":");
    }
    return " VALUES(" + utils::Join(fields, ", ") + ") ";
}

}  // namespace serverlog::db::internal
