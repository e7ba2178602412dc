#include "utils/db_command.h"

#include <mailserver-log/utils/error_line.h>
#include <soci/soci.h>

#include <algorithm>

#include "utils/strings.h"

namespace serverlog::utils {

bool ExecMultipleQuery(merodbquery::Session& session, const std::string& script) {
    for (const std::string& piece : Split(script, ';')) {
        const std::string statement = Trim(piece);
        if (!statement.empty() && !session.RawQuery(statement)) {
            SERVERLOG_ERROR_LINE("exec query error: %s", statement.c_str());
            return false;
        }
    }
    return true;
}

std::vector<std::string> EnumColumns(merodbquery::Session& session, const std::string& table,
                                     unsigned long columns) {
    try {
        soci::session& raw = session.GetRawSession();
        soci::transaction transaction(raw);
        // Row by row: reading all rows at once, SOCI leaks the texts of the columns not asked for.
        int id = 0;
        std::string name;
        soci::statement statement =
            (raw.prepare << "PRAGMA table_info(" + table + ");", soci::into(id), soci::into(name));
        statement.execute();
        std::vector<std::string> names;
        while (names.size() < columns && statement.fetch()) {
            names.push_back(name);
        }
        transaction.commit();
        return names;
    } catch (const soci::soci_error& error) {
        SERVERLOG_ERROR_LINE("Enum column error: %s", error.what());
        return {};
    }
}

bool ColumnExist(merodbquery::Session& session, const std::string& table, const std::string& name,
                 unsigned long columns) {
    const std::vector<std::string> names = EnumColumns(session, table, columns);
    return std::find(names.begin(), names.end(), name) != names.end();
}

bool ExecUnlessColumnExists(merodbquery::Session& session, const std::string& table,
                            const std::string& column, const std::string& script) {
    return ColumnExist(session, table, column, kMostColumns) || ExecMultipleQuery(session, script);
}

}  // namespace serverlog::utils
