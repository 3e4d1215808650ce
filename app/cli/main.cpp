#include "app/cli/Commands.h"

int main(int argc, char** argv) {
    return kelmo::Main(argc, argv);
}
