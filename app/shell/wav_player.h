#pragma once

#include <QProcess>
#include <QStringList>

#include <memory>
#include <string>
#include <vector>

/// A program that plays a sound file, and its arguments before the file's path.
struct SoundProgram {
    QString name;
    QStringList arguments;
};

/// Plays WAV files by the first of the desktop's usual programs that can; silently not if there is none.
/// Nobody waits for it; a sound that still plays ends with the player.
class WavPlayer : public QObject {
    Q_OBJECT

public:
    explicit WavPlayer(QObject* parent = nullptr);
    /// For these programs instead.
    explicit WavPlayer(std::vector<SoundProgram> programs, QObject* parent = nullptr);
    ~WavPlayer() override;

    /// Instead of what plays now.
    void Play(const std::wstring& path);

private:
    void TryNext();
    void Silence();

    std::vector<SoundProgram> programs;
    std::size_t next = 0;
    QString file;
    std::unique_ptr<QProcess> process;
};
