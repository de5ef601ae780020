#pragma once

#include "report/frames/frame_reader.h"

#include <QImage>
#include <QObject>
#include <QString>

#include <map>
#include <mutex>
#include <optional>
#include <vector>

namespace Report {

/// A `FrameReader` for a window: what it reads comes to the window's thread, as pictures of Qt. A picture
/// that wasn't taken over when the next one comes is lost, so that they don't pile up before a window that is
/// busy.
///
/// All of it is for the window's thread. Nothing comes any more once it is destroyed, which waits for no
/// reading.
class PictureReader : public QObject {
    Q_OBJECT

public:
    struct Picture {
        int file = 0;  // as asked for
        int frame = 0;
        QString error;  // why there is no image; empty if there is one
        QImage image;
    };

    /// Reads from sources that are open, and that belong to it.
    PictureReader(FrameReader::Sources sources, int yuvTable);
    /// Opens the files first.
    PictureReader(const std::map<int, FileRecord>& files, int yuvTable);
    ~PictureReader() override;

    void Request(int file, int frame) { reader->Request(file, frame); }

signals:
    /// The files that are open, before any picture; of files only that the reader opens itself.
    void Opened(const std::vector<FrameReader::OpenedFile>& files);
    void Arrived(const Report::PictureReader::Picture& picture);

private:
    void Leave(const FrameReader::Result& result);
    void Take();

    std::mutex mutex;
    std::optional<Picture> arrival;
    std::unique_ptr<FrameReader> reader;
};

}  // namespace Report
