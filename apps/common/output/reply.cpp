#include "output/reply.h"

#include "output/json_writer.h"

namespace serverlog::program {

void WriteReply(std::ostream& out, const Json::Value& reply) {
    const char* separator = "{";
    for (const char* name : {"success", "data", "error"}) {  // jsoncpp would sort them
        if (reply.isMember(name)) {
            out << separator << '"' << name << "\":" << CompactJson(reply[name]);
            separator = ",";
        }
    }
    out << "}\n";
}

}  // namespace serverlog::program
