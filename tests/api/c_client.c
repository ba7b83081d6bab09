// SPDX-License-Identifier: MIT
/* A host written in C: the public header compiles as strict C99 without warnings, the event
   record has the layout the C interface fixes, and the library can be driven from C. Exit
   status 0 when every check holds. */
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

int main(void) {
  uint32_t lo = 1, hi = 2;
  VNEvent event = {VN_EVENT_WORD_BOUNDARY, 0, 0, 0, {0, 0, 0, 0, 0}};

  CHECK(sizeof(VNEvent) == 9 * sizeof(uint32_t));
  CHECK(ReleaseLib() == 0);
  CHECK(GetRateSpeechRange(&lo, &hi) == &lo && lo == 0 && hi == 5000);
  (void)SetNotifyFunc(on_event, 0);
  CHECK(AddVNEvent(&event) == 1);
  CHECK(ReleaseLib() == 1);
  if (failures == 0) printf("C host: all checks passed\n");
  return failures == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
