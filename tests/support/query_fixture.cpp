#include "support/query_fixture.h"

#include <filesystem>

#include "support/spool.h"
#include "support/time_zone.h"

namespace test {

QueryTest::QueryTest() {
    SetZone("UTC");
    EmptySpool();
    for (const char* path :
         {"/var/packages/PostCube-Server/target/app/texts/enu",
          "/usr/mero/meroman/webman/texts/enu", "/var/packages/PostCube-Server/etc/domains.json"}) {
        std::filesystem::remove_all(path);
    }
}

}  // namespace test
