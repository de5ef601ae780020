#include "video/avisynth/temporary_script.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <string_view>
#include <thread>

#include "platform/text.h"
#include "platform/write_all.h"

const wchar_t* const kTemporaryScriptName = L"!!%__#$@&.avs";

namespace {

using Clock = std::chrono::steady_clock;
constexpr auto kLongestWait = std::chrono::seconds(10);
constexpr auto kPause = std::chrono::milliseconds(10);

std::string Name() {
    return ToUtf8(kTemporaryScriptName);
}

/// Whether the name still stands for the open file: another program may have taken it away since it was
/// opened.
bool HasName(int descriptor) {
    struct stat own = {}, named = {};
    return fstat(descriptor, &own) == 0 && lstat(Name().c_str(), &named) == 0 && own.st_dev == named.st_dev &&
           own.st_ino == named.st_ino;
}

/// False if someone else has locked the file. A file system without locks can't tell, and has nobody waiting
/// either.
bool Lock(int descriptor) {
    return flock(descriptor, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

enum class Old { Gone, InUse, Stays };

/// Takes an old script away unless somebody is using it. A link is taken away itself.
Old RemoveOld() {
    const int old = open(Name().c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (old < 0 && errno == ENOENT) return Old::Gone;
    if (old < 0 && errno != ELOOP) return Old::Stays;
    Old result = Old::Gone;
    if (old >= 0 && !Lock(old)) {
        result = Old::InUse;
    } else if ((old < 0 || HasName(old)) && unlink(Name().c_str()) != 0 && errno != ENOENT) {
        result = Old::Stays;
    }
    if (old >= 0) close(old);
    return result;
}

/// A new file with a lock; -1 with `mayRetry` if another program was quicker.
int CreateLocked(bool& mayRetry) {
    const int created = open(Name().c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    mayRetry = created >= 0 || errno == EEXIST;
    if (created < 0) return -1;
    if (Lock(created) && HasName(created)) return created;
    // Another program found it before it had its lock, and took it for an old one.
    close(created);
    return -1;
}

}  // namespace

rkTemporaryScript::~rkTemporaryScript() {
    if (descriptor < 0) return;
    if (HasName(descriptor)) unlink(Name().c_str());
    close(descriptor);
}

bool rkTemporaryScript::Create(const std::wstring& text) {
    const auto end = Clock::now() + kLongestWait;
    bool mayRetry = true;
    while (descriptor < 0 && mayRetry) {
        const Old old = RemoveOld();
        if (old == Old::Stays) return false;
        if (old == Old::Gone) descriptor = CreateLocked(mayRetry);
        if (descriptor >= 0) break;
        if (Clock::now() > end) return false;
        std::this_thread::sleep_for(kPause);
    }
    return descriptor >= 0 && WriteAll(descriptor, ToUtf8(text));
}

void rkRemoveStaleScript() {
    RemoveOld();
}
