#include <benchmark/benchmark.h>
#include <mailserver-log/webapi/api_runner.h>
#include <mailserver-log/webapi/emaillog/list.h>

#include <string>
#include <tuple>

#include "measure.h"
#include "opened_mail_log.h"
#include "output/json_writer.h"

namespace bench {
namespace {

constexpr int kReplyRows = 1'000;

/// The method with a door to what makes its reply.
class ListReply : public serverlog::webapi::emaillog::List {
 public:
    ListReply() : List(Json::Value(Json::objectValue)) {
        auto store = OpenMailLog(kCurrentPath);
        rows_ = store.MainTable().UnionList(merodbquery::Condition::Null(), "date", "DESC", 0,
                                            kReplyRows, store.Schemas());
    }

    Json::Value Payload() const { return ResponseBuilder(rows_); }
    std::string Text() const { return ResponseText(rows_); }

 private:
    LogRows rows_;
};

void ReplyAsValue(benchmark::State& state) {
    const ListReply reply;
    Measure(state,
            [&] { benchmark::DoNotOptimize(serverlog::program::CompactJson(reply.Payload())); });
}
BENCHMARK(ReplyAsValue)->Name("reply/floor")->Unit(benchmark::kMicrosecond);

void ReplyAsText(benchmark::State& state) {
    const ListReply reply;
    Measure(state, [&] { benchmark::DoNotOptimize(reply.Text()); });
}
BENCHMARK(ReplyAsText)->Name("reply/ours")->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace bench
