#include "process/failure.h"

#include <mailserver-log/exception/exception.h>

#include <cerrno>
#include <system_error>

namespace serverlog::program {

std::string DescribeException() {
    try {
        throw;
    } catch (const Exception<ETag::DB>& error) {
        return exception_str(error);
    } catch (const Exception<ETag::FileSystem>& error) {
        return exception_str(error);
    } catch (const Exception<ETag::Log>& error) {
        return exception_str(error);
    } catch (const Exception<ETag::SDK>& error) {
        return exception_str(error);
    } catch (const std::exception& error) {
        return error.what();
    } catch (...) {
        return "unknown failure";
    }
}

std::string DescribeErrno(const std::string& what) {
    return what + ": " + std::generic_category().message(errno);
}

}  // namespace serverlog::program
