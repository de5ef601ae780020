#include "report/picture_reader.h"

#include "platform/qt/wide_text.h"
#include "report/picture_image.h"

#include <utility>

namespace Report {

PictureReader::PictureReader(FrameReader::Sources sources, int yuvTable)
    : reader(std::make_unique<FrameReader>(std::move(sources), yuvTable,
                                           [this](const FrameReader::Result& result) { Leave(result); })) {}

PictureReader::PictureReader(const std::map<int, FileRecord>& files, int yuvTable) {
    const auto tell = [this](const std::vector<FrameReader::OpenedFile>& opened) {
        QMetaObject::invokeMethod(
            this, [this, opened] { emit Opened(opened); }, Qt::QueuedConnection);
    };
    reader = std::make_unique<FrameReader>(
        files, yuvTable, [this](const FrameReader::Result& result) { Leave(result); }, tell);
}

PictureReader::~PictureReader() {
    reader.reset();  // from here on its thread leaves nothing
}

/// On the reader's thread.
void PictureReader::Leave(const FrameReader::Result& result) {
    Picture picture = {result.file, result.frame, ToQString(result.error), {}};
    if (result.picture) {
        picture.image = ImageOf(*result.picture);
        if (picture.image.isNull()) picture.error = QStringLiteral("There isn't enough memory for the frame");
    }
    {
        const std::lock_guard lock(mutex);
        arrival = std::move(picture);
    }
    QMetaObject::invokeMethod(this, &PictureReader::Take, Qt::QueuedConnection);
}

void PictureReader::Take() {
    std::optional<Picture> taken;
    {
        const std::lock_guard lock(mutex);
        taken.swap(arrival);
    }
    if (taken) emit Arrived(*taken);
}

}  // namespace Report
