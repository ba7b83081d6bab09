// SPDX-License-Identifier: MIT
// A host as a developer writes one against the installed library: speaks into a WAV file and
// fails on any message of the library but the note that the file is complete (a missing voice
// is reported, not fatal, so the WAV alone proves nothing). Built by the install test with
// pkg-config and with find_package(vntts).
#include <stdio.h>
#include <string.h>
#include <vntts/vntts.h>

static int problems = 0;

static void VNTTS_CALL OnMessage(uintptr_t user, const char* text, const char* caption,
                                 int icon) {
  (void)user;
  (void)icon;
  if (strcmp(text, "Complete!") == 0) return;
  fprintf(stderr, "client: %s %s\n", caption, text);
  ++problems;
}

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  VNSetMessageHandler(OnMessage, 0);
  if (!SaveVNToWaveFile("Xin chào, một hai ba.", argv[1]) || !VNWaitUntilDone(60000)) return 1;
  ReleaseLib();
  return problems == 0 ? 0 : 1;
}
