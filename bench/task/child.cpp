// SPDX-License-Identifier: MIT
// Ends at once, or prints as many bytes as its argument says.
#include <algorithm>
#include <cstdlib>
#include <string>

#include <unistd.h>

int main(int argc, char *argv[])
{
    const std::string block(1024 * 1024, 'x');
    for (long left = argc > 1 ? std::atol(argv[1]) : 0; left > 0;) {
        const ssize_t length = ::write(STDOUT_FILENO, block.data(), size_t(std::min(left, long(block.size()))));
        if (length <= 0)
            return 1;
        left -= length;
    }
    return 0;
}
