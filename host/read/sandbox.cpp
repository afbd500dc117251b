// SPDX-License-Identifier: MIT
#include "host/read/sandbox.h"

#include <cerrno>
#include <cstring>
#include <memory>

#include <QCoreApplication>

#include <fcntl.h>
#include <poll.h>
#include <sched.h>
#include <seccomp.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

bool closedIn = false;

} // namespace

// The leak sanitizer looks from a process of its own, which there cannot be after enterSandbox().
extern "C" int __lsan_is_turned_off();
extern "C" int __lsan_is_turned_off()
{
    return closedIn;
}

namespace host {
namespace {

constexpr rlim_t openFiles = 64;

/// What is refused whatever its arguments. Names that a machine does not have are passed over.
const char *const refused[] = {
    // Changes to the file system. A file in memory can be run like one on a disk.
    "creat", "mkdir", "mkdirat", "mknod", "mknodat", "unlink", "unlinkat", "rmdir", "rename",
    "renameat", "renameat2", "link", "linkat", "symlink", "symlinkat", "truncate", "truncate64",
    "ftruncate", "ftruncate64", "fallocate", "chmod", "fchmod", "fchmodat", "fchmodat2", "chown",
    "chown32", "fchown", "fchown32", "lchown", "lchown32", "fchownat", "utime", "utimes",
    "utimensat", "utimensat_time64", "futimesat", "setxattr", "lsetxattr", "fsetxattr",
    "removexattr", "lremovexattr", "fremovexattr", "memfd_create", "memfd_secret",
    "open_by_handle_at", "mount", "umount", "umount2", "pivot_root", "chroot", "move_mount",
    "fsopen", "fsmount", "fspick", "open_tree", "mount_setattr", "swapon", "swapoff", "acct",
    "quotactl", "quotactl_fd",
    // The network, and ways round this filter.
    "socket", "socketpair", "socketcall", "connect", "bind", "listen", "accept", "accept4",
    "io_uring_setup", "io_uring_enter", "io_uring_register", "io_setup", "io_submit",
    // Programs and processes.
    "execve", "execveat", "fork", "vfork",
    // Others: their memory, their files, their signals, what they share.
    "ptrace", "process_vm_readv", "process_vm_writev", "process_madvise", "kcmp", "pidfd_open",
    "pidfd_getfd", "pidfd_send_signal", "rt_sigqueueinfo", "rt_tgsigqueueinfo", "shmget", "shmat",
    "shmctl", "msgget", "msgsnd", "msgctl", "semget", "semop", "semctl", "mq_open", "mq_unlink",
    "setpgid", "setsid",
    // The system.
    "unshare", "setns", "bpf", "perf_event_open", "userfaultfd", "add_key", "request_key", "keyctl",
    "init_module", "finit_module", "delete_module", "kexec_load", "kexec_file_load", "reboot",
    "sethostname", "setdomainname", "settimeofday", "clock_settime", "adjtimex", "clock_adjtime",
    "iopl", "ioperm", "syslog", "vhangup"};

/// Adds up the answers of the library; the filter is used only if each is good.
class Filter {
public:
    Filter() : context_(seccomp_init(SCMP_ACT_ALLOW), &seccomp_release)
    {
        // The calls of other word sizes would pass by the rules; nobody here makes any.
        note(context_
                 ? seccomp_attr_set(context_.get(), SCMP_FLTATR_ACT_BADARCH, SCMP_ACT_ERRNO(EPERM))
                 : -ENOMEM);
    }

    void refuse(const char *call, int error = EPERM)
    {
        const int number = seccomp_syscall_resolve_name(call);
        if (context_ && number != __NR_SCMP_ERROR)
            note(seccomp_rule_add(context_.get(), SCMP_ACT_ERRNO(error), number, 0));
    }

    /// Refuses a call where its argument compares so.
    void refuseIf(const char *call, const scmp_arg_cmp &argument)
    {
        const int number = seccomp_syscall_resolve_name(call);
        if (context_ && number != __NR_SCMP_ERROR)
            note(seccomp_rule_add_array(context_.get(), SCMP_ACT_ERRNO(EPERM), number, 1,
                                        &argument));
    }

    /// Returns 0 or an error number.
    int load()
    {
        if (error_ == 0)
            note(seccomp_load(context_.get()));
        return -error_;
    }

private:
    void note(int answer)
    {
        if (error_ == 0 && answer < 0)
            error_ = answer;
    }

    std::unique_ptr<void, decltype(&seccomp_release)> context_;
    int error_ = 0; // the first, negative as the library gives it
};

/// Lets a file be opened for reading alone. An unknown flag is not judged: it opens nothing.
void refuseWriting(Filter &filter, const char *call, unsigned flags)
{
    const auto with = [&](scmp_datum_t mask, scmp_datum_t bits) {
        filter.refuseIf(call, SCMP_CMP(flags, SCMP_CMP_MASKED_EQ, mask, bits));
    };
    with(O_WRONLY, O_WRONLY);
    with(O_RDWR, O_RDWR);
    with(O_CREAT, O_CREAT);
    with(O_TRUNC, O_TRUNC); // empties the file even of one who only reads
}

int loadFilter()
{
    Filter filter;
    for (const char *call : refused)
        filter.refuse(call);
    refuseWriting(filter, "open", 1);
    refuseWriting(filter, "openat", 2);
    // What hides its arguments behind a pointer is as if it were not there; libraries fall back.
    filter.refuse("openat2", ENOSYS);
    filter.refuse("clone3", ENOSYS);
    filter.refuseIf("clone", SCMP_A0(SCMP_CMP_MASKED_EQ, CLONE_THREAD, 0));
    const auto self = scmp_datum_t(getpid());
    for (const char *call : {"kill", "tgkill"}) // abort() signals its own process
        filter.refuseIf(call, SCMP_A0(SCMP_CMP_NE, self));
    filter.refuse("tkill");
    filter.refuseIf("prlimit64", SCMP_A0(SCMP_CMP_GT, 0));                       // of others
    filter.refuseIf("ioctl", SCMP_A1(SCMP_CMP_MASKED_EQ, 0xffffffffu, TIOCSTI)); // types
    return filter.load();
}

void lower(decltype(RLIMIT_NOFILE) what, rlim_t most)
{
    rlimit now{};
    getrlimit(what, &now);
    now.rlim_max = now.rlim_max < most ? now.rlim_max : most;
    now.rlim_cur = now.rlim_max;
    setrlimit(what, &now);
}

} // namespace

QString enterSandbox()
{
    lower(RLIMIT_NOFILE, openFiles);
    const int error = prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ? errno : loadFilter();
    if (error == 0) {
        closedIn = true;
        return {};
    }
    // Counts threads as well, and all of a person's processes, so it is the second choice.
    lower(RLIMIT_NPROC, 0);
    return QCoreApplication::translate("Sandbox", "the reader was not closed in: %1")
        .arg(QString::fromLocal8Bit(std::strerror(error)));
}

bool hasListener(int stream)
{
    pollfd end{stream, 0, 0};
    return poll(&end, 1, 0) < 1 || (end.revents & POLLERR) == 0;
}

} // namespace host
