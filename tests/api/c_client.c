// SPDX-License-Identifier: MIT
/* A host written in C: the public header compiles as strict C99 without warnings, the event
   record has the layout the C interface fixes, and the library can be driven from C. Exit
   status 0 when every check holds. */
#include <stdio.h>
#include <stdlib.h>

#include "vntts/vntts.h"

static void VNTTS_CALL on_event(uintptr_t user, VNEvent event) {
  (void)user;
  (void)event;
}

int main(void) {
  uint32_t lo = 1, hi = 2;
  VNEvent event = {VN_EVENT_WORD_BOUNDARY, 0, 0, 0, {0, 0, 0, 0, 0}};
  const int layout = sizeof(VNEvent) == 9 * sizeof(uint32_t);
  const int range = GetRateSpeechRange(&lo, &hi) == &lo && lo == 0 && hi == 5000;
  const int events = SetNotifyFunc(on_event, 0) == on_event && AddVNEvent(&event) == 1;
  const int released = ReleaseLib() == 1 && ReleaseLib() == 0;
  printf("C host: layout %d, range %d, events %d, release %d\n", layout, range, events, released);
  return layout && range && events && released ? EXIT_SUCCESS : EXIT_FAILURE;
}
