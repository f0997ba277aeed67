#include "cli/Application.h"
#include "platform/Console.h"
#include "scanners/ScannerTable.h"

int main(int Count, char **Values) {
  hivesweep::TSystemConsole Console;
  hivesweep::TCliHost Host = {Console, HIVESWEEP_VERSION, hivesweep::ScannerTable(),
                              hivesweep::MakeLivePlatform};
  return hivesweep::RunCli(Host, hivesweep::ConsoleArguments(Count, Values));
}
