#include "ForkedChild.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>

namespace velmorindal {

pid_t startChild(const std::function<int()>& work) {
    const pid_t child = ::fork();
    if (child < 0) {
        throw std::system_error{errno, std::generic_category(), "fork"};
    }
    if (child == 0) {
        ::alarm(300);
        ::_exit(work());
    }
    return child;
}

int waitForChild(pid_t child) {
    int status = 0;
    while (::waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) {
            throw std::system_error{errno, std::generic_category(), "waitpid"};
        }
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

int inChild(const std::function<int()>& work) {
    return waitForChild(startChild(work));
}

int asOrdinaryUser(const std::function<int()>& work) {
    return inChild([&work] {
        constexpr uid_t nobody = 65534;
        constexpr int rightsKept = 254;
        if (::geteuid() == 0 && (::setgid(nobody) != 0 || ::setuid(nobody) != 0)) {
            return rightsKept;
        }
        return work();
    });
}

}  // namespace velmorindal
