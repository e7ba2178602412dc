#include "support/store_reader.h"

#include <merodbquery/session.h>
#include <unistd.h>

#include <stdexcept>

namespace test {

StoreReader::Pipe::Pipe() {
    if (pipe(ends_) != 0) {
        throw std::runtime_error("pipe");
    }
}

StoreReader::Pipe::~Pipe() {
    close(ends_[0]);
    close(ends_[1]);
}

void StoreReader::Pipe::Pass() const {
    if (write(ends_[1], "", 1) != 1) {
        throw std::runtime_error("write");
    }
}

void StoreReader::Pipe::Await() const {
    char byte = 0;
    if (read(ends_[0], &byte, 1) != 1) {
        throw std::runtime_error("read");
    }
}

StoreReader::StoreReader(const std::string& path, const std::string& query)
    : child_([this, path, query] {
          merodbquery::Session session = merodbquery::Session::SQLite(path);
          session.RawQuery("BEGIN");
          const bool has_read = session.RawQuery(query);
          started_.Pass();
          finish_.Await();
          return std::string(has_read && session.RawQuery("COMMIT") ? "read" : "failed");
      }) {
    started_.Await();
}

std::string StoreReader::Finish() {
    finish_.Pass();
    return child_.Wait();
}

}  // namespace test
