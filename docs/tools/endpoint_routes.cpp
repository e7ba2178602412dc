// Prints what the endpoint offers as JSON, for scripts/openapi-methods.

#include <iostream>

#include "routes.h"
#include "utils/json_text.h"

int main() {
    Json::Value table(Json::arrayValue);
    for (const serverlog::endpoint::Route& route : serverlog::endpoint::MakeRoutes()) {
        Json::Value row;
        row["api"] = route.api;
        row["method"] = route.method;
        row["version"] = serverlog::endpoint::kVersion;
        row["operation"] = route.operation;
        row["changes"] = route.changes;
        row["document"] = route.writes_document;
        table.append(row);
    }
    std::cout << serverlog::utils::ToJsonText(table);
    return 0;
}
