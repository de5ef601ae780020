#include "app/shell/start_up.h"
#include "platform/text.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include <cstdlib>
#include <fstream>
#include <set>

// The desktop program with a server and a user that the test of whole updates chooses by the environment:
//
//   TEST_UPDATE_SERVER   where it looks for newer versions
//   TEST_NOTES           the file in which the user notes the title of each window and message that comes up
//   TEST_REFUSED         the title of a question that the user answers with "No"; "Yes" to all others
//   TEST_MEASURES        anything: the user presses "Process" in the first main window

namespace {

/// The end of the program's own file, behind the machine code. Copies of it differ in that alone.
std::string OwnVersion(const std::wstring& program) {
    std::string version = "3.0.0.0";
    std::ifstream file(ToUtf8(program), std::ios::binary);
    file.seekg(-static_cast<std::streamoff>(version.size()), std::ios::end);
    file.read(version.data(), static_cast<std::streamsize>(version.size()));
    return version;
}

void Note(const QString& title) {
    std::ofstream(qEnvironmentVariable("TEST_NOTES").toStdString(), std::ios::app)
        << OwnVersion(UpdaterSettings().programPath) << ' ' << title.toStdString() << '\n';
}

void LookAtWindows() {
    static std::set<QString> seen;
    for (const QWidget* window : QApplication::topLevelWidgets()) {
        const QString title = window->windowTitle();
        if (!window->isVisible() || qobject_cast<const QMessageBox*>(window)) continue;
        if (!seen.insert(title).second) continue;
        Note(title);
        if (!qEnvironmentVariableIsSet("TEST_MEASURES")) continue;
        qunsetenv("TEST_MEASURES");
        for (QPushButton* button : window->findChildren<QPushButton*>())
            if (button->text() == QStringLiteral("&Process"))
                QMetaObject::invokeMethod(button, "click", Qt::QueuedConnection);
    }
}

/// Leaves alone what is no question or message of an update.
void Answer(const QMessageBox& box) {
    const bool refuses = box.windowTitle() == qEnvironmentVariable("TEST_REFUSED");
    QAbstractButton* answer = box.button(refuses ? QMessageBox::No : QMessageBox::Yes);
    if (!answer) answer = box.button(QMessageBox::Ok);
    if (!answer) return;
    Note(box.windowTitle());
    answer->click();
}

void StartUser() {
    auto* const timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, [] {
        LookAtWindows();
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) Answer(*box);
    });
    timer->start(10);
}
Q_COREAPP_STARTUP_FUNCTION(StartUser)

}  // namespace

int main(int, char** argv) {
    UpdaterSettings settings;
    settings.version = OwnVersion(settings.programPath);
    settings.isOnline = [] { return true; };
    return RunShell(argv[0], std::getenv("TEST_UPDATE_SERVER"), settings);
}
