// SPDX-License-Identifier: MIT
// With KX_TEST_OLD_SYSTEM set, the process runs as under a kernel that knows no process descriptors.
#include <QtCore/QtGlobal>

#include <cerrno>
#include <cstddef>
#include <iterator>

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

const bool ready = [] {
    if (!qEnvironmentVariableIsSet("KX_TEST_OLD_SYSTEM"))
        return true;
    sock_filter program[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_pidfd_open, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | ENOSYS),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog filter{static_cast<unsigned short>(std::size(program)), program};
    if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 || ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) != 0)
        qFatal("no filter of system calls");
    if (::syscall(SYS_pidfd_open, ::getpid(), 0) != -1 || errno != ENOSYS)
        qFatal("the filter does not work");
    return true;
}();

} // namespace
