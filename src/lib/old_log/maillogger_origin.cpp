#include <GeoIP.h>
#include <GeoIPCity.h>
#include <mailserver-log/old_log/maillogger.h>
#include <mailserver-log/utils/error_line.h>

#include <cstring>
#include <list>
#include <memory>
#include <string>

#include "old_log/log_files.h"
#include "old_log/row_query.h"
#include "old_log/security_queries.h"
#include "old_log/sql_text.h"
#include "utils/merosdk/critical_section.h"

using namespace statistic_log;
using serverlog::utils::CriticalSection;

namespace {

// So many rows are saved in one transaction, to keep it short.
constexpr int kBatch = 100;

struct DeleteRecord {
    void operator()(GeoIPRecord* record) const { GeoIPRecord_delete(record); }
};
using RecordPointer = std::unique_ptr<GeoIPRecord, DeleteRecord>;

RowQuery PrepareRaised(MailLogger& logger, DBHandler& handler, const std::string& text) {
    const CriticalSection section(__FILE__, __LINE__);
    return RowQuery(logger, handler, text);
}

// The key is hour and place, on purpose: of several addresses at one place the last one counts
// alone.
std::string SaveOriginCommand(int time, const GeoIPRecord& record, int count) {
    return SqlText(
        "INSERT OR REPLACE INTO main.%s(%s, %s, %s, %s, %s, %s, %s) VALUES(%d, '%q', '%q', '%q', "
        "%f, %f, %d)",
        kThreatOrigin.hour_table, "time", "country_code", "country", "city", "latitude",
        "longitude", "count", time, record.country_code, record.country_name,
        record.city == nullptr ? "" : record.city, static_cast<double>(record.latitude),
        static_cast<double>(record.longitude), count);
}

GeoIP* OpenGeoIP(const char* path) {
    GeoIP* const data = GeoIP_open(path, GEOIP_INDEX_CACHE);
    if (data != nullptr) {
        GeoIP_set_charset(data, GEOIP_CHARSET_UTF8);
    }
    return data;
}

}  // namespace

int MailLogger::execQueriesForThreatOrigin(const std::string& alias, int attached,
                                           const std::list<std::string>& domains) {
    // Inbound alone: only a stranger's address says something on the map.
    const std::string counts = hourCountsOf(kInbound, "src", "", alias, attached, domains);
    int result = saveThreatOrigins(OriginsQuery(counts));
    if (result == 0) {
        SQLCmd sum_up;
        sum_up += SumUpOriginsCommand(lastCountTime).c_str();
        result = writeThreatOrigins(sum_up);
    }
    GeoIPFree();
    return result;
}

int MailLogger::saveThreatOrigins(const std::string& query) {
    RowQuery rows = PrepareRaised(*this, *securityStatisticDb, query);
    SQLCmd commands;
    int more = 0;
    for (int read = 1; (more = rows.Next()) > 0; ++read) {
        const RecordPointer record(GeoIPRecordGet(rows.Text(1).c_str()));
        if (record != nullptr) {
            commands += SaveOriginCommand(rows.Number(0), *record, rows.Number(2)).c_str();
        }
        if (read % kBatch == 0) {
            if (writeThreatOrigins(commands) < 0) {
                return -1;
            }
            commands = SQLCmd();
        }
    }
    return more < 0 ? -1 : writeThreatOrigins(commands);
}

int MailLogger::writeThreatOrigins(const SQLCmd& commands) {
    if (execRaised(*securityStatisticDb, commands, true) == 0) {
        return 0;
    }
    errorSource = kSecurityStatisticSource;
    HandleError();
    return -1;
}

GeoIPRecord* MailLogger::GeoIPRecordGet(const char* address) {
    if (std::strchr(address, ':') == nullptr) {
        if (geoIp == nullptr) {
            geoIp.reset(
                OpenGeoIP("/var/packages/PostCube-Server/target/etc/geoip/GeoLiteCity.dat"));
        }
        if (geoIp == nullptr) {
            SERVERLOG_ERROR_LINE("Failed to open GeoIP db");
            return nullptr;
        }
        return GeoIP_record_by_name(geoIp.get(), address);
    }
    if (geoIpV6 == nullptr) {
        geoIpV6.reset(
            OpenGeoIP("/var/packages/PostCube-Server/target/etc/geoip/GeoLiteCityv6.dat"));
    }
    if (geoIpV6 == nullptr) {
        SERVERLOG_ERROR_LINE("Failed to open GeoIPv6 db");
        return nullptr;
    }
    return GeoIP_record_by_name_v6(geoIpV6.get(), address);
}

void MailLogger::GeoIPFree() {
    geoIp.reset();
    geoIpV6.reset();
}

void MailLogger::DeleteGeoIP::operator()(GeoIPTag* data) const {
    GeoIP_delete(data);
}
