#include "support/store_reader.h"

#include <merodbquery/session.h>

namespace test {

StoreReader::StoreReader(const std::string& path, const std::string& query)
    : child_([this, path, query] {
          merodbquery::Session session = merodbquery::Session::SQLite(path);
          session.RawQuery("BEGIN");
          const bool has_read = session.RawQuery(query);
          started_.Show();
          finish_.Await();
          return std::string(has_read && session.RawQuery("COMMIT") ? "read" : "failed");
      }) {
    started_.Await();
}

std::string StoreReader::Finish() {
    finish_.Show();
    return child_.Wait();
}

}  // namespace test
