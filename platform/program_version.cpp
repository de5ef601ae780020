#include "platform/program_version.h"

const char* ProgramVersion() {
    return TOLVANE_VERSION;
}
