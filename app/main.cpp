#include "app/shell/start_up.h"

int main(int, char** argv) {
    return RunShell(argv[0]);
}
