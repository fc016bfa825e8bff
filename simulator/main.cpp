#include "simulator_app.h"

int main(int argc, char** argv)
{
    return simulator::runSimulator(argc, argv);
}
