#include <GeoIP.h>
#include <GeoIPCity.h>
#include <gmock/gmock.h>
#include <mailserver-log/old_log/maillogger.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "support/child.h"
#include "support/spool.h"
#include "support/sqlite_file.h"
#include "support/statistics.h"
#include "support/syslog_socket.h"

namespace {

using test::LocalTime;
using test::RunOnFile;
using test::SecurityEvent;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

using Rows = std::vector<std::string>;

constexpr long kHour = 3600;
const std::string kStatistic = test::kSpool + "security_statistic.db";
const std::filesystem::path kGeoIP = "/var/packages/PostCube-Server/target/etc/geoip";
constexpr char kLog[] = "aggr_security_log.db";

class Security : public testing::Test {
 protected:
    void SetUp() override {
        SKIP_WITHOUT_SECOND_USER();
        test::EmptySpool();
        test::SetZone("UTC");
        test::SetDomains({"own.example"});
        std::filesystem::remove_all(kGeoIP);
        std::filesystem::create_directories(kGeoIP);
    }

    test::SyslogSocket syslog_;
};

TEST_F(Security, KeepsTwentyNineDays) {
    const long now = LocalTime("2024-05-30 10:00:00");
    const std::string limit = std::to_string(LocalTime("2024-05-01 00:00:00"));
    const std::string before = std::to_string(LocalTime("2024-05-01 00:00:00") - 1);
    const Rows tables = {"threat_overview_hour", "threat_overview_day",  "threat_origin_hour",
                         "threat_origin_day",    "blocked_address_hour", "blocked_address_day"};
    test::BeginAt(now);
    MailLogger logger(300);
    ASSERT_EQ(logger.securityStatistic(), 0);
    for (const std::string& table : tables) {
        RunOnFile(kStatistic,
                  "INSERT INTO " + table + "(time) VALUES(" + limit + "), (" + before + ")");
    }
    ASSERT_EQ(logger.securityStatistic(), 0);
    for (const std::string& table : tables) {
        EXPECT_THAT(RunOnFile(kStatistic, "SELECT time FROM " + table), ElementsAre(limit))
            << table;
    }
}

TEST_F(Security, ManyDomainsMakeALongStatement) {
    Rows domains;
    for (int i = 0; i < 400; ++i) {
        domains.push_back("a-rather-long-name-" + std::to_string(i) + ".example");
    }
    const long now = LocalTime("2024-05-07 10:30:00");
    test::SetDomains(domains);
    AddEvents(kLog, std::vector<SecurityEvent>{
                        {now, "spam", "s", "x@far.example", "r@" + domains.back()},
                        {now, "spam", "s", "x@" + domains.back(), "r@" + domains.front()}});
    test::BeginAt(now);
    MailLogger logger(300);
    ASSERT_EQ(logger.securityStatistic(), 0);
    EXPECT_THAT(RunOnFile(kStatistic, "SELECT mail_type, count FROM threat_overview_hour"),
                ElementsAre("inbound|1"));
}

// ---- Where threats come from ----

struct Place {
    unsigned long first;  ///< addresses of the place, as numbers
    unsigned long last;
    std::string location;  ///< country, region, city, postal code, latitude, longitude
};

/// Makes the file of the places of IPv4 addresses with Debian's generator. Its first location must
/// not be one that is looked for: its record lies where "not found" points to.
void MakePlaces(const std::vector<Place>& places) {
    std::ofstream blocks("/tmp/blocks.csv");
    std::ofstream locations("/tmp/locations.csv");
    blocks << "Test\nstartIpNum,endIpNum,locId\n\"16777216\",\"16777216\",\"1\"\n";
    locations
        << "Test\nlocId,country,region,city,postalCode,latitude,longitude,metroCode,areaCode\n"
        << "1,\"AU\",\"\",\"\",\"\",1.0,1.0,,\n";
    int number = 1;
    for (const Place& place : places) {
        ++number;
        blocks << '"' << place.first << "\",\"" << place.last << "\",\"" << number << "\"\n";
        locations << number << ',' << place.location << ",,\n";
    }
    blocks.close();
    locations.close();
    const std::string command =
        "/usr/lib/geoip/geoip-generator --type=GEOIP_CITY_EDITION_REV1"
        " --location-csv=/tmp/locations.csv --output=" +
        (kGeoIP / "GeoLiteCity.dat").string() + " /tmp/blocks.csv";
    ASSERT_EQ(std::system(command.c_str()), 0)
        << "geoip-bin is not installed; scripts/setup does it";
}

constexpr unsigned long kTestNet = 0xC0000200;  // 192.0.2.0/24

std::vector<Place> TwoPlaces() {
    return {{kTestNet, kTestNet + 9,
             R"("DE","07","K)"
             "\xf6"  // the data is in ISO 8859-1
             R"(ln","50667",50.9333,6.9500)"},
            {kTestNet + 10, kTestNet + 99, R"("FR","","","",46.5000,-2.2500)"}};
}

SecurityEvent Inbound(long date, const std::string& src) {
    return {date, "spam", src, "x@far.example", "r@own.example"};
}

TEST_F(Security, LooksUpAddresses) {
    MakePlaces(TwoPlaces());
    MailLogger logger(300);
    const auto place = [&](const char* address) {
        const std::unique_ptr<GeoIPRecord, void (*)(GeoIPRecord*)> record(
            logger.GeoIPRecordGet(address), GeoIPRecord_delete);
        return record == nullptr ? std::string("none")
                                 : std::string(record->country_code) + " " +
                                       (record->city == nullptr ? "-" : record->city);
    };
    EXPECT_EQ(place("192.0.2.3"), "DE K\xc3\xb6ln");
    EXPECT_EQ(place("192.0.2.77"), "FR -");
    EXPECT_EQ(place("198.51.100.1"), "none");
    EXPECT_EQ(place("300.1.1.1"), "none");
    EXPECT_EQ(place(""), "none");
    EXPECT_THAT(syslog_.TakeErrors(), IsEmpty());
    EXPECT_EQ(place("2001:db8::1"), "none");
    EXPECT_EQ(place("2001:db8::2"), "none");
    EXPECT_THAT(syslog_.TakeErrors(),
                ElementsAre("Failed to open GeoIPv6 db", "Failed to open GeoIPv6 db"));

    std::filesystem::remove(kGeoIP / "GeoLiteCity.dat");
    EXPECT_EQ(place("192.0.2.3"), "DE K\xc3\xb6ln") << "kept in the handle";
    logger.GeoIPFree();
    EXPECT_EQ(place("192.0.2.3"), "none");
    EXPECT_THAT(syslog_.TakeErrors(), ElementsAre("Failed to open GeoIP db"));
}

TEST_F(Security, CountsPlaces) {
    MakePlaces(TwoPlaces());
    const long now = LocalTime("2024-05-07 10:30:00");
    AddEvents(kLog, std::vector<SecurityEvent>{
                        Inbound(now - 2 * kHour, "192.0.2.1"),  // before what is counted
                        Inbound(now, "192.0.2.1"),
                        Inbound(now, "192.0.2.2"),
                        Inbound(now, "192.0.2.2"),
                        Inbound(now, "192.0.2.1"),
                        Inbound(now, "192.0.2.1"),
                        Inbound(now, "192.0.2.50"),
                        Inbound(now + kHour, "192.0.2.50"),
                        Inbound(now, "198.51.100.1"),
                        {now, "spam", "192.0.2.1", "r@own.example", "x@far.example"}});
    test::BeginAt(now);
    MailLogger logger(300);
    ASSERT_EQ(logger.securityStatistic(), 0);
    const std::string hour = std::to_string(now - 1800);
    const std::string next = std::to_string(now + 1800);
    const std::string day = std::to_string(LocalTime("2024-05-07 00:00:00"));
    const std::string select =
        "SELECT time, country_code, country, city, latitude, longitude, count"
        " FROM threat_origin_";
    const std::string cologne = "|DE|Germany|K\xc3\xb6ln|50.9333|6.95|";
    // Of two addresses at one place the one that is read last counts alone.
    EXPECT_THAT(RunOnFile(kStatistic, select + "hour ORDER BY time, country"),
                ElementsAre(hour + "|FR|France||46.5|-2.25|1", hour + cologne + "2",
                            next + "|FR|France||46.5|-2.25|1"));
    EXPECT_THAT(RunOnFile(kStatistic, select + "day ORDER BY country"),
                ElementsAre(day + "|FR|France||46.5|-2.25|2", day + cologne + "2"));
    EXPECT_THAT(syslog_.TakeErrors(), IsEmpty());
}

TEST_F(Security, SavesMoreThanAHundredPlacesInBatches) {
    constexpr int kCount = 250;
    const long now = LocalTime("2024-05-07 10:30:00");
    std::vector<Place> places;
    std::vector<SecurityEvent> events;
    for (int i = 0; i < kCount; ++i) {
        places.push_back({kTestNet + static_cast<unsigned>(i), kTestNet + static_cast<unsigned>(i),
                          R"("FR","","","",)" + std::to_string(i * 0.25) + ",10.0"});
        events.push_back(Inbound(now, "192.0.2." + std::to_string(i)));
    }
    MakePlaces(places);
    AddEvents(kLog, events);
    test::BeginAt(now);
    MailLogger logger(300);
    ASSERT_EQ(logger.securityStatistic(), 0);
    EXPECT_THAT(RunOnFile(kStatistic, "SELECT COUNT(*), SUM(latitude * 4) FROM threat_origin_hour"),
                ElementsAre("250|" + std::to_string(kCount * (kCount - 1) / 2) + ".0"));

    // Row 230 fails: what was saved in the two batches before stays.
    RunOnFile(kStatistic,
              "DELETE FROM threat_origin_hour; CREATE TRIGGER refuse BEFORE INSERT ON "
              "threat_origin_hour WHEN (SELECT COUNT(*) FROM threat_origin_hour) = 230 "
              "BEGIN SELECT RAISE(ABORT, 'full'); END");
    EXPECT_EQ(logger.securityStatistic(), -1);
    EXPECT_THAT(RunOnFile(kStatistic, "SELECT COUNT(*) FROM threat_origin_hour"),
                ElementsAre("200"));
    EXPECT_THAT(syslog_.TakeErrors(), Contains("Failed to execQueriesForThreatOrigin"));
    EXPECT_TRUE(test::IsFree(test::kSecurityLock));
}

}  // namespace
