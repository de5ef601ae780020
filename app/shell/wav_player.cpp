#include "app/shell/wav_player.h"

#include "platform/qt/wide_text.h"

#include <QFileInfo>
#include <QStandardPaths>

#include <utility>

namespace {

/// Those that go through a sound server come first: they mix with what else sounds.
std::vector<SoundProgram> UsualPrograms() {
    return {
        {QStringLiteral("paplay"), {}},
        {QStringLiteral("pw-play"), {}},
        {QStringLiteral("canberra-gtk-play"), {QStringLiteral("-f")}},
        {QStringLiteral("aplay"), {QStringLiteral("-q")}},
        {QStringLiteral("ffplay"),
         {QStringLiteral("-nodisp"), QStringLiteral("-autoexit"), QStringLiteral("-loglevel"),
          QStringLiteral("quiet")}},
    };
}

}  // namespace

WavPlayer::WavPlayer(QObject* parent) : WavPlayer(UsualPrograms(), parent) {}

WavPlayer::WavPlayer(std::vector<SoundProgram> soundPrograms, QObject* parent)
    : QObject(parent), programs(std::move(soundPrograms)) {}

WavPlayer::~WavPlayer() {
    Silence();
}

void WavPlayer::Silence() {
    if (!process) return;
    process->disconnect(this);
    process->kill();
    process->waitForFinished();
    process.reset();
}

void WavPlayer::Play(const std::wstring& path) {
    Silence();
    file = QFileInfo(ToQString(path)).absoluteFilePath();  // a path that begins with "-" is no option
    next = 0;
    if (QFileInfo::exists(file)) TryNext();
}

void WavPlayer::TryNext() {
    QString program;
    while (program.isEmpty() && next < programs.size())
        program = QStandardPaths::findExecutable(programs[next++].name);
    if (program.isEmpty()) return;

    process = std::make_unique<QProcess>();
    process->setStandardOutputFile(QProcess::nullDevice());
    process->setStandardErrorFile(QProcess::nullDevice());
    // A program that is there but finds no sound server or device leaves it to the next. Queued: the process
    // may not be replaced while it reports. A report that comes when another sound plays already isn't meant.
    const QProcess* const reporting = process.get();
    connect(
        process.get(), &QProcess::finished, this,
        [this, reporting](int status) {
            if (status != 0 && reporting == process.get()) TryNext();
        },
        Qt::QueuedConnection);
    connect(
        process.get(), &QProcess::errorOccurred, this,
        [this, reporting](QProcess::ProcessError error) {
            if (error == QProcess::FailedToStart && reporting == process.get()) TryNext();
        },
        Qt::QueuedConnection);
    process->start(program, programs[next - 1].arguments + QStringList(file));
}
