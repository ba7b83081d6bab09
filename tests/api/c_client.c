// SPDX-License-Identifier: MIT
/* A host written in C: the public header compiles as strict C99 without warnings, and the
   library can be driven from C. Exit status 0 when every check holds. */
#include <stdio.h>
#include <stdlib.h>

#include "vntts/vntts.h"

static int failures = 0;

#define CHECK(cond)                                                                                \
  do {                                                                                             \
    if (!(cond)) {                                                                                 \
      fprintf(stderr, "%s:%d: check failed: %s\n", __FILE__, __LINE__, #cond);                     \
      ++failures;                                                                                  \
    }                                                                                              \
  } while (0)

static void VNTTS_CALL on_event(uintptr_t user, VNEvent event) {
  (void)user;
  (void)event;
}

static void VNTTS_CALL on_message(uintptr_t user, const char* text, const char* caption, int icon) {
  (void)text;
  (void)caption;
  (void)icon;
  ++*(int*)user;
}

int main(void) {
  int messages = 0;
  uint16_t channels = 7, bits = 9;
  uint32_t rate = 11, lo = 1, hi = 2;
  VNEvent event = {VN_EVENT_WORD_BOUNDARY, 0, 0, 0, {0, 0, 0, 0, 0}};
  VNNotifyProc notify = on_event;

  CHECK(sizeof(VNEvent) == 9 * sizeof(uint32_t));
  VNSetMessageHandler(on_message, (uintptr_t)&messages);

  CHECK(IsPlaying() == 0);
  CHECK(GetWaveInfo(&channels, &rate, &bits) == 0);
  CHECK(channels == 7 && rate == 11 && bits == 9);
  CHECK(LoadFileWave("") == 0);
  CHECK(ReleaseLib() == 0);

  CHECK(GetRateSpeechRange(&lo, &hi) == &lo);
  CHECK(lo == 0 && hi == 5000);
  CHECK(SetRateSpeech(4000) == 5000);
  CHECK(GetRateSpeech() == 4000);
  (void)SetNotifyFunc(notify, 0);
  (void)AddVNEvent(&event);
  RemoveAllEvents();
  CHECK(ReleaseLib() == 1);
  CHECK(ReleaseLib() == 0);

  VNSetMessageHandler(NULL, 0);
  if (failures == 0) printf("C host: all checks passed\n");
  return failures == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
