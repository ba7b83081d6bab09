/* SPDX-License-Identifier: MIT */
/*
 * A host written in C, without Qt: it opens the Speaker window, then runs the Record window from
 * its main thread, and releases the library. The library's own thread carries the windows. A
 * second thread closes the windows once both are open, as a person closing them would end them.
 */
#include <pthread.h>
#include <stdio.h>
#include <unistd.h>

#include "vntts/vntts.h"

int OpenModuleWindows(void);
void CloseModuleWindows(void);

static int failures;

#define CHECK(condition)                                                                           \
  do {                                                                                             \
    if (!(condition)) {                                                                            \
      fprintf(stderr, "%s:%d: %s\n", __FILE__, __LINE__, #condition);                              \
      ++failures;                                                                                  \
    }                                                                                              \
  } while (0)

static void* CloseWhenBothAreOpen(void* unused) {
  (void)unused;
  for (int i = 0; i < 1200 && OpenModuleWindows() < 2; ++i)
    usleep(50000);
  CHECK(OpenModuleWindows() == 2);
  CloseModuleWindows();
  return NULL;
}

int main(void) {
  CHECK(SpeakDlg(0, "Xin chao cac ban.") == 1);
  CHECK(OpenModuleWindows() == 1);
  pthread_t closer;
  pthread_create(&closer, NULL, CloseWhenBothAreOpen, NULL);
  CHECK(Record(0) == 2);
  pthread_join(closer, NULL);
  CHECK(ReleaseLib() == 1);

  /* After a release a window starts everything again: a new engine and a new thread. */
  CHECK(SpeakDlg(0, "Lan hai.") == 1);
  CHECK(OpenModuleWindows() == 1);
  CHECK(ReleaseLib() == 1);
  CHECK(ReleaseLib() == 0);
  return failures ? 1 : 0;
}
