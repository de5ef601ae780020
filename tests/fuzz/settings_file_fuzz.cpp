#include <cstdint>
#include <string_view>

#include "platform/qt/qt_settings_store.h"
#include "platform/text.h"
#include "tests/fuzz/fuzz_input.h"
#include "tests/temporary_directory.h"

#include <QSettings>

namespace {

constexpr const char* kNames[] = {"run_num", "comp_analysis", "metric", "csv_output_dir", "original"};

/// The directory of the files. Each input has a name of its own: the library keeps what it has read of one.
const TemporaryDirectory& Directory() {
    static const TemporaryDirectory directory;
    static const bool isSet = [] {
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope,
                           QString::fromStdString(directory.Root().native()));
        return true;
    }();
    Require(isSet);
    return directory;
}

}  // namespace

/// Takes the bytes for the file of settings. It reads as something, and whatever stands in it, a value that
/// is written comes back as it was and as nothing else.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static int count = 0;
    const TemporaryDirectory& directory = Directory();
    const std::string name = "input" + std::to_string(count++);
    QtSettingsStore store(QStringLiteral("fuzz"), QString::fromStdString(name));
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    std::filesystem::create_directory(directory.Path("fuzz"));
    directory.Write("fuzz/" + name + ".ini", bytes);

    for (const char* value : kNames) {
        store.ReadNumber(value);
        store.ReadText(value);
    }
    const std::wstring text = FromUtf8(bytes.substr(size / 2));
    Require(store.WriteText("metric", text));
    Require(store.ReadText("metric") == text && !store.ReadNumber("metric"));
    const int number = size > 0 ? data[size - 1] - 128 : 0;
    Require(store.WriteNumber("metric", number));
    Require(store.ReadNumber("metric") == number && !store.ReadText("metric"));
    std::filesystem::remove(store.FilePath().toStdString());
    return 0;
}
