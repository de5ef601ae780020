#include "app/shell/open_waiting.h"

#include "report/wait_cursor.h"

#include <QEventLoop>
#include <QTimer>

#include <chrono>
#include <exception>
#include <future>

namespace {

using Opening = std::future<std::unique_ptr<rkIVideoSource>>;

constexpr std::chrono::milliseconds kLookInterval{5};

void WaitFor(const Opening& opening) {
    QEventLoop loop;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, &loop, [&] {
        if (opening.wait_for(std::chrono::seconds(0)) == std::future_status::ready) loop.quit();
    });
    look.start(kLookInterval);
    loop.exec(QEventLoop::ExcludeUserInputEvents);
}

}  // namespace

std::unique_ptr<rkIVideoSource> OpenWaiting(const FileRecord& record) {
    const Report::WaitCursor cursor;
    try {
        Opening opening = std::async(std::launch::async, [&record] { return record.OpenSource(true); });
        WaitFor(opening);
        return opening.get();
    } catch (const std::exception&) {  // no memory for a huge picture, or no thread
        return nullptr;
    }
}
