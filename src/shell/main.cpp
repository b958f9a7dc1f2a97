// Entry of both executables: the window and the replay of transcripts.
#include "shell/shell.h"

int main(int argc, char** argv) {
  WInitialise(argc, argv);
  StartProgram();
  RunProgram();
  return 0;
}
