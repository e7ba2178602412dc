#include "output/descriptor_buffer.h"

#include <unistd.h>

#include <cerrno>

namespace serverlog::program {

DescriptorBuffer::DescriptorBuffer(int descriptor, const StopSignal& stop)
    : descriptor_(descriptor), stop_(stop) {
    setp(bytes_.begin(), bytes_.end());
}

DescriptorBuffer::int_type DescriptorBuffer::overflow(int_type character) {
    if (!WriteOut()) {
        return traits_type::eof();
    }
    if (!traits_type::eq_int_type(character, traits_type::eof())) {
        sputc(traits_type::to_char_type(character));
    }
    return traits_type::not_eof(character);
}

int DescriptorBuffer::sync() {
    return WriteOut() ? 0 : -1;
}

bool DescriptorBuffer::WriteOut() {
    const char* begin = pbase();
    while (begin < pptr() && error_ == 0) {
        if (stop_.Requested()) {
            error_ = ECANCELED;
            break;
        }
        const ssize_t count = write(descriptor_, begin, static_cast<std::size_t>(pptr() - begin));
        if (count >= 0) {
            begin += count;
        } else if (errno != EINTR) {
            error_ = errno;
        }
    }
    setp(bytes_.begin(), bytes_.end());
    return error_ == 0;
}

}  // namespace serverlog::program
