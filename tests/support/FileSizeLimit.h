#pragma once

#include <csignal>
#include <sys/resource.h>

namespace kelvora::testsupport {

// While alive, no file of this process may grow past `bytes` (0: no limit): a write
// beyond fails with EFBIG, as a full disk fails with ENOSPC, without a disk to fill.
class FileSizeLimit {
public:
    explicit FileSizeLimit(long long bytes)
    {
        if (bytes <= 0)
            return;
        m_active = getrlimit(RLIMIT_FSIZE, &m_saved) == 0;
        const rlimit limit{rlim_t(bytes), m_saved.rlim_max};
        m_previousHandler = std::signal(SIGXFSZ, SIG_IGN);
        m_active = m_active && setrlimit(RLIMIT_FSIZE, &limit) == 0;
    }
    ~FileSizeLimit()
    {
        if (m_active)
            setrlimit(RLIMIT_FSIZE, &m_saved);
        if (m_previousHandler != SIG_ERR)
            std::signal(SIGXFSZ, m_previousHandler);
    }
    FileSizeLimit(const FileSizeLimit &) = delete;
    FileSizeLimit &operator=(const FileSizeLimit &) = delete;

private:
    rlimit m_saved{};
    bool m_active = false;
    void (*m_previousHandler)(int) = SIG_ERR;
};

} // namespace kelvora::testsupport
