#include <merodbquery/query.h>

#include "merodbquery/sqlite_backend.h"

namespace merodbquery {

Query::Query(const Session& session) : session_(session) {}

bool Query::Execute() {
    try {
        PrepareAndExecute(true);
        return true;
    } catch (const soci::soci_error& error) {
        SetErrorText(error.what());
        statement_.reset();
        return false;
    }
}

void Query::BeginRun() {
    was_run_ = false;
    last_fetch_ = false;
    replace_elements_ = true;
    error_text_.clear();
}

bool Query::PrepareAndExecute(bool fetch_first) {
    BeginRun();
    // Before the session is asked for: a statement that is still open would keep a moved file open.
    statement_.reset();
    binder_.Clear();
    const std::string text = GetQuery();

    statement_ = std::make_unique<soci::statement>(session_.GetRawSession());
    for (const auto& exchange : *elements_) {
        exchange(*statement_);
    }
    binder_.BindTo(*statement_);
    statement_->alloc();
    statement_->prepare(text);
    statement_->define_and_bind();
    last_fetch_ = statement_->execute(fetch_first);
    was_run_ = true;
    return last_fetch_;
}

void Query::RunKept(const std::string& text) {
    BeginRun();
    try {
        KeptStatement& kept = session_.Kept(text);
        if (kept.bound != elements_) {
            ForgetBoundValues(kept.statement);
            for (const auto& exchange : *elements_) {
                exchange(kept.statement);
            }
            kept.statement.define_and_bind();
            kept.bound = elements_;
        }
        kept.statement.execute(true);
    } catch (...) {
        session_.DropStatement(text);
        throw;
    }
}

bool Query::FetchNext() {
    last_fetch_ = was_run_ && session_.Good() && statement_->fetch();
    return last_fetch_;
}

void Query::AddElement(std::function<void(soci::statement&)> element) {
    if (replace_elements_) {
        elements_ = std::make_shared<Elements>();
        replace_elements_ = false;
    }
    elements_->push_back(std::move(element));
}

}  // namespace merodbquery
