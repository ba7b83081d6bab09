// SPDX-License-Identifier: MIT
/*
 * vntts: Vietnamese text-to-speech.
 *
 * The library is one speech engine behind a flat C interface. The engine is created by the first
 * call that needs it (the calls marked "Creates the engine" below) and destroyed by ReleaseLib;
 * the calls marked "Needs the engine" do nothing and return 0 while no engine exists.
 *
 * Results follow one convention: 1 (or a value) means success, 0 failure, unless a function says
 * otherwise. No C++ exception ever leaves the library. A failure the user should see (a missing
 * data file, a device error, "Out off memory !!!") is reported through the message handler, by
 * default printed as "caption: text" on stderr (see VNSetMessageHandler).
 *
 * Threads: call the library from one client thread. A speak call hands the text to worker
 * threads of the engine and returns; SpeakVN, SpeakVNUTF8 and SpeakVNASCII first wait 1000 ms
 * when they interrupt speech that is playing (the Ex calls do not). The notification function
 * is called on the thread that plays (a worker thread for speech, the caller's thread for
 * PlayWave), so it must be callable from a thread other than the one that registered it.
 *
 * Callbacks: the notification function and the message handler may call any function of this
 * header, ReleaseLib included, and may wait for the client's thread without a deadlock. Only
 * SetNotifyFunc (and the speak calls that change the function or its user value) and ReleaseLib
 * wait for a notification call: for a call of the old function running on another thread, at
 * most 1000 ms, and never when they are called from a callback. Once they return, the old
 * function is done, so the host may free its user data (unless that call has run longer than
 * 1000 ms). (VNWaitUntilDone called from the notification function returns 0 at once.)
 *
 * Text: strings are zero-terminated byte strings. Three input forms exist: the engine's internal
 * 8-bit encoding "VNI-Windows ANSI" (SpeakVN family), UTF-8 (SpeakVNUTF8 family) and code page
 * 1258 text with separate tone marks, "Windows 95VN" (SpeakVNASCII family). The library never
 * keeps a pointer to a string it was given: it copies what it needs before returning.
 */
#ifndef VNTTS_VNTTS_H
#define VNTTS_VNTTS_H

#include <stdint.h>

#if defined(_WIN32)
#define VNTTS_CALL __stdcall
#if defined(VNTTS_BUILDING_LIBRARY)
#define VNTTS_API __declspec(dllexport)
#else
#define VNTTS_API __declspec(dllimport)
#endif
#else
/* Default visibility on every declaration, so the library exports these names whatever the
   order in which its own files include this header; its version script keeps out the rest. */
#define VNTTS_CALL
#define VNTTS_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Event kinds carried in VNEvent.kind. */
enum {
  VN_EVENT_UNDEFINED = 0,
  VN_EVENT_START_INPUT_STREAM = 1,
  VN_EVENT_END_INPUT_STREAM = 2,
  VN_EVENT_WORD_BOUNDARY = 3,
  VN_EVENT_SENTENCE_BOUNDARY = 4,
  VN_EVENT_SOUND_START = 5,
  VN_EVENT_SOUND_END = 6,
  VN_EVENT_DRAW = 7,
  VN_EVENT_OPEN_DIALOG = 8,
  VN_EVENT_CLOSE_DIALOG = 9,
  VN_EVENT_RESERVED = 20
};

/*
 * One event: nine 32-bit words, always copied by value.
 * position:    the sample frame of the sound being played at which the event fires
 *              (for VN_EVENT_SOUND_END the byte length of that sound);
 * text_start,
 * text_length: for word boundaries, where the word lies in the spoken text (byte offsets of
 *              the internal-encoding text);
 * param:       free for the client's own events; a sentence boundary carries the sentence's
 *              text start in param[0] and its length in param[1]; a sound start carries 1 in
 *              param[2].
 */
typedef struct VNEvent {
  uint32_t kind;
  uint32_t position;
  uint32_t text_start;
  uint32_t text_length;
  uint32_t param[5];
} VNEvent;

/*
 * The client's notification function: receives the user value given with it, then the event
 * by value. Its result is ignored. Called on the playing thread (see the top of this file).
 */
typedef void(VNTTS_CALL* VNNotifyProc)(uintptr_t user, VNEvent event);

/*
 * An audio output the client opened with VNOpenOutput and hands to the ...Ex speak calls;
 * speech then plays through it. 0 means none: the default output is used.
 */
typedef uintptr_t VNOutputHandle;

/* Size in bytes a buffer given to GetBufOfWord must have: the longest word the engine renders. */
#define VN_WORD_BUFFER_BYTES 100000

/* ---- Speaking ------------------------------------------------------------------------------ */

/*
 * Speaks text in the internal encoding ("VNI-Windows ANSI"). Stores notify and user as
 * SetNotifyFunc does, stops any running speech and returns; the speech goes on in the
 * background. When it interrupts speech that is playing it waits 1000 ms before returning (a
 * host that must not wait uses the Ex calls with output 0; one that wants to know when speech
 * is over uses VNWaitUntilDone or the VN_EVENT_SOUND_END of the last sentence). While speech is
 * paused, a speak call resumes it and ignores the new text. Creates the engine.
 */
VNTTS_API void VNTTS_CALL SpeakVN(const char* text, VNNotifyProc notify, uintptr_t user);

/*
 * As SpeakVN, playing through the client's own output (0: the default output, or the output a
 * previous Ex call gave), without the 1000 ms wait. Creates the engine.
 */
VNTTS_API void VNTTS_CALL SpeakVNEx(const char* text, VNOutputHandle output, VNNotifyProc notify,
                                    uintptr_t user);

/* As SpeakVN for UTF-8 text; invalid UTF-8 sequences are replaced, never fatal. Creates. */
VNTTS_API void VNTTS_CALL SpeakVNUTF8(const char* utf8_text, VNNotifyProc notify, uintptr_t user);

/* As SpeakVNEx for UTF-8 text. Creates the engine. */
VNTTS_API void VNTTS_CALL SpeakVNUTF8Ex(const char* utf8_text, VNOutputHandle output,
                                        VNNotifyProc notify, uintptr_t user);

/*
 * As SpeakVN for "Windows 95VN" text (code page 1258 bytes, tone marks as separate bytes).
 * Creates the engine.
 */
VNTTS_API void VNTTS_CALL SpeakVNASCII(const char* text, VNNotifyProc notify, uintptr_t user);

/* As SpeakVNEx for "Windows 95VN" text. Creates the engine. */
VNTTS_API void VNTTS_CALL SpeakVNASCIIEx(const char* text, VNOutputHandle output,
                                         VNNotifyProc notify, uintptr_t user);

/*
 * Speaks UTF-8 text into the WAV file at path instead of the sound card, in the background. The
 * WAV file the previous call created is deleted first (not one it only appended to, nor a path
 * it could not write); an existing file at path is appended to. When the file cannot be written
 * (or would grow past 4 GB) the speech ends after one message. Returns 1 once the speech has
 * started, 0 when it could not start. Creates the engine.
 */
VNTTS_API int VNTTS_CALL SaveVNToWaveFile(const char* utf8_text, const char* path);

/*
 * Opens the speaker window (without a parent, modeless) with text (internal encoding) in its text
 * box and returns once it is shown; value is handed to the window. Returns nonzero when the
 * window exists, 0 (after a message) when the window module libvntts-ui.so or a display is
 * missing. In a program that runs a QApplication the window lives on that application's thread;
 * otherwise on a thread of the library's own. A second call brings the window forward with the
 * new text. Creates the engine.
 */
VNTTS_API int VNTTS_CALL SpeakDlg(uintptr_t value, const char* text);

/*
 * Pauses the sentence that is playing (also one whose sound is still starting). 1 if it was
 * paused, else 0: also between two sentences, when nothing plays. Needs the engine.
 */
VNTTS_API int VNTTS_CALL PauseSpeak(void);

/* Resumes paused speech. 1 if it was resumed, else 0. Needs the engine. */
VNTTS_API int VNTTS_CALL ResumeSpeak(void);

/* Pauses playing speech or resumes paused speech. 0 when nothing plays. Needs the engine. */
VNTTS_API int VNTTS_CALL PauseResumeSpeak(void);

/*
 * Stops speech and returns after the background work has noticed the stop: once it returns no
 * further word is rendered and no sentence of that speech starts to sound. It does not wait for
 * a notification function that is running. 1, or 0 without an engine. Needs the engine.
 */
VNTTS_API int VNTTS_CALL StopSpeak(void);

/*
 * 1 while a sentence is in the engine's output (also while paused), else 0. It drops to 0 for
 * a moment between two sentences, so do not poll it to learn that speech is over: use
 * VNWaitUntilDone or the events. Needs the engine.
 */
VNTTS_API int VNTTS_CALL IsPlaying(void);

/*
 * Renders one word (internal encoding) into buffer, which the caller owns and which must hold
 * VN_WORD_BUFFER_BYTES bytes: 16-bit mono 22050 Hz samples. Stores the byte count in *length.
 * Nonzero when the word was rendered, 0 otherwise. Creates the engine.
 */
VNTTS_API int VNTTS_CALL GetBufOfWord(const char* word, void* buffer, uint32_t* length);

/* ---- Events -------------------------------------------------------------------------------- */

/*
 * Sets the notification function (may be null) and the user value handed back to it. Returns
 * notify (null when the engine could not be created). From the moment it returns, no call of
 * the previous function begins. When notify or user differs from the previous ones, it first
 * waits until a call of the previous function running on another thread has returned, at most
 * 1000 ms; it never waits when called from the notification function or the message handler.
 * This is how a host learns that its callback is finished: SetNotifyFunc(NULL, 0), then free
 * the user data. (StopSpeak does not wait for a running callback.) Creates the engine.
 */
VNTTS_API VNNotifyProc VNTTS_CALL SetNotifyFunc(VNNotifyProc notify, uintptr_t user);

/*
 * Adds a copy of *event to the event list, before the first event at the same or a later
 * position. Returns the number of events in the list. The list's events fire in every sentence
 * played; one added while a sentence plays fires in it when its position is still ahead, else
 * from the next sentence on. Creates the engine.
 */
VNTTS_API uint32_t VNTTS_CALL AddVNEvent(const VNEvent* event);

/* Empties the event list. Creates the engine. */
VNTTS_API void VNTTS_CALL RemoveAllEvents(void);

/* ---- Settings ------------------------------------------------------------------------------ */

/* The current volume: left channel in the low 16 bits, right in the high 16. Creates. */
VNTTS_API uint32_t VNTTS_CALL GetVolume(void);

/* The default volume, 13107. Creates the engine. */
VNTTS_API uint32_t VNTTS_CALL GetDefaultVolume(void);

/* Mutes, or restores the volume saved by the previous mute. Returns 1. Creates the engine. */
VNTTS_API int VNTTS_CALL MuteVolume(void);

/*
 * Sets the volume, both channels packed as GetVolume gives them (a value up to 65535 sets the
 * left channel and silences the right). 0 on success, 1 after a device error. Creates.
 */
VNTTS_API int VNTTS_CALL SetVolume(uint32_t volume);

/* Writes 0 and 65535 to *minimum and *maximum; returns minimum. Creates the engine. */
VNTTS_API uint32_t* VNTTS_CALL GetVolumeRange(uint32_t* minimum, uint32_t* maximum);

/* The current pitch in 16.16 fixed point; 0 when the output cannot change pitch. Creates. */
VNTTS_API uint32_t VNTTS_CALL GetPitch(void);

/* The default pitch, 65536 (1.0 in 16.16 fixed point). Creates the engine. */
VNTTS_API uint32_t VNTTS_CALL GetDefaultPitch(void);

/*
 * Sets the pitch. Speech is pitch-shifted in software as each sentence is made ready for the
 * output, by at most an octave either way (0x8000 .. 0x20000; other values act as the nearer
 * end), without changing its length; the value set is what GetPitch returns. 0 on success or
 * when the output cannot change pitch, 1 after a device error. Creates the engine.
 */
VNTTS_API int VNTTS_CALL SetPitch(uint32_t pitch);

/*
 * Writes the pitch range to *minimum and *maximum: 0 and 0xFFFFFFFF (0 and 0 when the output
 * cannot change pitch); returns minimum. Creates the engine.
 */
VNTTS_API uint32_t* VNTTS_CALL GetPitchRange(uint32_t* minimum, uint32_t* maximum);

/* The speaking rate, 0 (slowest) .. 5000 (fastest). Creates the engine. */
VNTTS_API uint32_t VNTTS_CALL GetRateSpeech(void);

/* The default rate, 5000: no extra silence between words. Creates the engine. */
VNTTS_API uint32_t VNTTS_CALL GetDefaultRateSpeech(void);

/*
 * Sets the speaking rate (not clamped: values above 5000 wrap and read back unchanged).
 * Returns 5000. Creates the engine.
 *
 * What to expect: a lower rate adds silence after each word, at 0 up to about half a second.
 * That silence is kept between two words that form a known two-word phrase, but every word that
 * forms none halves it for the rest of the text, and for later texts until the rate is set
 * again: after a dozen such words speech is back at the fastest pace. Set the rate again before
 * each text to slow that text's start; docs/engine.md gives measured figures.
 */
VNTTS_API uint32_t VNTTS_CALL SetRateSpeech(uint32_t rate);

/* Writes 0 and 5000 to *minimum and *maximum; returns minimum. Creates the engine. */
VNTTS_API uint32_t* VNTTS_CALL GetRateSpeechRange(uint32_t* minimum, uint32_t* maximum);

/*
 * Sets the output format by code: 8..11 for 11025 Hz, 20..23 for 22050 Hz, 32..35 for 44100 Hz,
 * each group in the order mono 8-bit, stereo 8-bit, mono 16-bit, stereo 16-bit. 1 if applied,
 * 0 if the code is refused. Creates the engine.
 */
VNTTS_API int VNTTS_CALL SetVNAudioFormat(uint32_t code);

/*
 * Sets the rate to 5000 and the output format to mono, 11025 Hz, 8 bits (not the format a new
 * engine starts with, which is stereo, 22050 Hz, 16 bits). Volume, pitch and mute stay as they
 * are. Creates the engine.
 */
VNTTS_API void VNTTS_CALL ResetAllToDefault(void);

/* ---- The engine's wave ---------------------------------------------------------------------- */

/*
 * Plays the engine's wave from sample frame first for (end - first) frames on the calling
 * thread; returns when it has played or was stopped (from another thread or from the
 * notification function). 0 when played, else a device error code. Needs the engine.
 */
VNTTS_API int VNTTS_CALL PlayWave(uint32_t first, uint32_t end);

/* Pauses, resumes or stops PlayWave. Needs the engine. */
VNTTS_API void VNTTS_CALL PausePlayWave(void);
VNTTS_API void VNTTS_CALL ResumePlayWave(void);
VNTTS_API void VNTTS_CALL StopPlayWave(void);

/*
 * Loads a WAV file into the engine's wave. 1 on success, 0 on failure (reported). An empty or
 * null path returns 0 and does not create the engine. Otherwise creates the engine.
 */
VNTTS_API int VNTTS_CALL LoadFileWave(const char* path);

/* Saves the whole engine's wave as a WAV file. 1 on success, 0 on failure. Creates. */
VNTTS_API int VNTTS_CALL SaveFileWave(const char* path);

/* The number of sample frames in the engine's wave. Needs the engine. */
VNTTS_API uint32_t VNTTS_CALL GetCountSample(void);

/*
 * The engine's sample block; owned by the engine and valid until the wave changes (load, speak,
 * record) or ReleaseLib. Null without an engine or without samples. Needs the engine.
 */
VNTTS_API void* VNTTS_CALL GetDataBuf(void);

/*
 * Copies the channels, samples per second and bits per sample of the output format and returns
 * 1. Without an engine returns 0 and leaves the three outputs untouched. Needs the engine.
 */
VNTTS_API int VNTTS_CALL GetWaveInfo(uint16_t* channels, uint32_t* samples_per_second,
                                     uint16_t* bits_per_sample);

/* ---- Recording and tools ------------------------------------------------------------------- */

/*
 * Runs the record window modally; value is not used. Returns 2 once the window is closed, 0 when
 * it cannot be shown (as for SpeakDlg). Creates the engine.
 */
VNTTS_API int VNTTS_CALL Record(uintptr_t value);

/*
 * Records from the default input device for `milliseconds` and saves the take as a WAV file at
 * `path` (UTF-8 file name, copied before the call returns), in the format of the engine's wave
 * buffer. No window is shown; the call blocks until the take is saved. Call it from the host's
 * thread. 1 on success, 0 on failure (the recorder's message says why: "Failed to open
 * device.", "Failed to set params of device.", "Failed to start record.").
 * With `milliseconds` 0 the record window runs instead (as Record), with `path` (may be empty)
 * as the file the take is saved under when the user declines to choose another; 1 when the take
 * was written to a file. Creates the engine.
 */
VNTTS_API int VNTTS_CALL RecordToFile(const char* path, uint32_t milliseconds);

/* Runs the abbreviation-table editor modally; value is handed to it. Creates the engine. */
VNTTS_API void VNTTS_CALL EditDefinition(uintptr_t value);

/* Runs the "Tools" sheet modally; value is not used. Nonzero when it ran. Creates. */
VNTTS_API int VNTTS_CALL Tools(uintptr_t value);

/* ---- Lifetime ------------------------------------------------------------------------------ */

/*
 * Stops any speech and destroys the engine. 1 if an engine was destroyed, else 0. Pointers the
 * engine handed out (GetDataBuf) become invalid, and no notification call begins after it
 * returns; one running on another thread has returned too, as after SetNotifyFunc(NULL, 0)
 * (waited for at most 1000 ms). The next creating call makes a fresh engine with default settings (and reads the
 * voice and the word stores again: a rebuilt voice is picked up here).
 *
 * May be called from the notification function: speech ends, and the engine is destroyed once
 * that function has returned (by the next call into the library at the latest, or when the
 * library is unloaded).
 */
VNTTS_API int VNTTS_CALL ReleaseLib(void);

/* ---- Extensions ---------------------------------------------------------------------------- */

/* Message icons handed to a message handler. */
enum { VN_MESSAGE_INFORMATION = 0, VN_MESSAGE_WARNING = 1, VN_MESSAGE_ERROR = 2 };

/*
 * A host's message handler: receives its user value, the message text, the caption (may be
 * empty, never null) and one of the VN_MESSAGE_ icons. Texts are UTF-8 and valid only during
 * the call. May be called on any of the library's threads.
 */
typedef void(VNTTS_CALL* VNMessageProc)(uintptr_t user, const char* text, const char* caption,
                                        int icon);

/*
 * Installs handler (null: back to the default, "caption: text" on stderr) for every message the
 * library shows from now on, including those of an engine that already exists. Does not create
 * the engine. Safe to call from any thread.
 */
VNTTS_API void VNTTS_CALL VNSetMessageHandler(VNMessageProc handler, uintptr_t user);

/*
 * Opens an output handle for the ...Ex speak calls that names a sound output: a PulseAudio sink
 * name (see `pactl list short sinks`) or an ALSA PCM name when the library plays through ALSA.
 * The name is copied. Returns 0 for a null or empty name, and 0 after a message for a name no
 * sound system can open (it opens a stream on it briefly to find out). Does not create the
 * engine. The engine keeps the first handle it is offered and copies its name, until
 * ReleaseLib or until the host closes that handle. Any thread.
 */
VNTTS_API VNOutputHandle VNTTS_CALL VNOpenOutput(const char* device_name);

/*
 * Frees a handle from VNOpenOutput; 0 is ignored. When the engine holds this handle, it lets go
 * of it: speech goes back to the default output and the next Ex call's handle is taken. Any
 * thread.
 */
VNTTS_API void VNTTS_CALL VNCloseOutput(VNOutputHandle output);

/*
 * Blocks until the current speech has been played, or written by SaveVNToWaveFile, or was
 * stopped; at most timeout_ms milliseconds. Speech that a notification function started in the
 * meantime counts as current. 1 when done (also when no engine exists), 0 when the time ran out.
 * Does not create the engine. From the notification function (which runs on the thread it would
 * wait for) it returns 0 at once.
 */
VNTTS_API int VNTTS_CALL VNWaitUntilDone(uint32_t timeout_ms);

/* ---- Synthesis to the host (extensions) ---------------------------------------------------- */

/* Event kind of a <mark/> of speech markup, as VNSynthesizeUTF8 reports it. */
#define VN_EVENT_MARK 10

/* Flags of VNSynthesizeUTF8. */
#define VN_SYNTHESIS_MARKUP 1u /* read a text whose first element is <speak> as speech markup */
#define VN_SYNTHESIS_SPELL 2u  /* say every character on its own */

/*
 * One event of synthesis to the host.
 * kind:        VN_EVENT_WORD_BOUNDARY, VN_EVENT_SENTENCE_BOUNDARY or VN_EVENT_MARK;
 * sample:      where it is heard, counted in samples from the start of the synthesis (it lies
 *              within the chunk it comes with, or at its end);
 * text_start,
 * text_length: the bytes of the caller's UTF-8 text it stands for (for a mark, the offset of
 *              its element and 0);
 * name:        the mark's name (UTF-8, valid during the call), else NULL.
 */
typedef struct VNSynthesisEvent {
  uint32_t kind;
  uint32_t sample;
  uint32_t text_start;
  uint32_t text_length;
  const char* name;
} VNSynthesisEvent;

/*
 * Receives the speech of VNSynthesizeUTF8 a chunk at a time (a sentence, a pause, or only
 * events): `count` samples of 16-bit mono sound at 22050 Hz (may be 0) and the events heard
 * within them, in order. Both arrays are valid only during the call. Return nonzero to go on,
 * 0 to end the synthesis at once.
 */
typedef int(VNTTS_CALL* VNSynthesisProc)(uintptr_t user, const int16_t* samples, uint32_t count,
                                         const VNSynthesisEvent* events, uint32_t event_count);

/*
 * Speaks UTF-8 text into `proc` instead of the sound device and returns when all is said: the
 * same sound SaveVNToWaveFile writes in mono 16-bit 22050 Hz, with the speed (VNSetSpeed), the
 * pitch (SetPitch) and the rate in force. With VN_SYNTHESIS_MARKUP a <speak> document is read
 * as speech markup (mark, break, say-as, prosody, sub; see docs/speech-markup.md). `proc` runs
 * on the calling thread and may call any export; a speech running when the call begins is
 * stopped first, as by a speak call. Returns 1 when everything was delivered, 2 when the
 * synthesis was ended early (by `proc`, StopSpeak or another speak call), 0 when it could not
 * run (a null text or function). Creates the engine.
 */
VNTTS_API int VNTTS_CALL VNSynthesizeUTF8(const char* utf8_text, uint32_t flags,
                                          VNSynthesisProc proc, uintptr_t user);

/*
 * The speed of speech in percent of the recorded pace, 50 .. 400 (100 at the start): unlike the
 * rate, which only adds silence between words, it compresses or stretches the speech itself
 * without changing its pitch. It lasts until changed and applies to speech on the device, WAV
 * files and VNSynthesizeUTF8 from the next sentence on. VNSetSpeed clamps and returns the value
 * now in force. Both create the engine.
 */
VNTTS_API uint32_t VNTTS_CALL VNSetSpeed(uint32_t percent);
VNTTS_API uint32_t VNTTS_CALL VNGetSpeed(void);

/* The library's version, such as "0.1.0"; a static string. Does not create the engine. */
VNTTS_API const char* VNTTS_CALL VNGetVersion(void);

/*
 * Maps a range of the internal text (text_start and text_length of a word or sentence event
 * of SpeakVNUTF8 or SpeakVNUTF8Ex) back to the UTF-8 text that was spoken: writes the byte
 * offset and length of the characters the range came from (a range that starts or ends inside
 * a character's bytes covers the whole character). utf8_text must be the text given to the
 * speak call. Null outputs are skipped. 1, or 0 for a null text. Does not create the engine.
 */
VNTTS_API int VNTTS_CALL VNTextRangeToUTF8(const char* utf8_text, uint32_t start, uint32_t length,
                                           uint32_t* utf8_start, uint32_t* utf8_length);

#ifdef __cplusplus
}
#endif

#endif /* VNTTS_VNTTS_H */
