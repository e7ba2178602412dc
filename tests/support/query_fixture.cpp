#include "support/query_fixture.h"

#include <stdlib.h>
#include <time.h>

#include <filesystem>

#include "support/spool.h"

namespace test {

QueryTest::QueryTest() {
    setenv("TZ", "UTC", 1);
    tzset();
    EmptySpool();
    for (const char* path :
         {"/var/packages/PostCube-Server/target/app/texts/enu",
          "/usr/mero/meroman/webman/texts/enu", "/var/packages/PostCube-Server/etc/domains.json"}) {
        std::filesystem::remove_all(path);
    }
}

}  // namespace test
