#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""sd_vntts under a real speech-dispatcher daemon, heard through a real PulseAudio server.

Usage: speech_dispatcher_e2e.py MODULE DATA_DIR
Starts speech-dispatcher with a configuration of its own that loads MODULE as "vntts" (voice
from DATA_DIR) and talks to it as a screen reader would, with python3-speechd:
  - marks: BEGIN, every index mark in order and spread over the speech, END;
  - stop: STOP in the middle of speech ends it with a STOP (cancel) event, and the sound with it;
  - rate: the same text at rate 50 takes about half the time it takes at rate 0;
  - pitch: at pitch 50 the voice's fundamental is 2^0.5 times that at 0 (within 5%: the median of a tonal voice).
Run beside a PulseAudio server (scripts/with-pulseaudio). Exit status 0 passed, 1 failed,
77 skipped (no daemon, client library or sound server).
"""
import array
import os
import shutil
import subprocess
import sys
import tempfile
import threading
import time

SKIP = 77


def skip(why):
    print("skipped:", why)
    sys.exit(SKIP)


try:
    import speechd
except ImportError:
    skip("python3-speechd is not installed")

DAEMON = shutil.which("speech-dispatcher")
PAREC = shutil.which("parec")
if not DAEMON:
    skip("speech-dispatcher is not installed")
if not os.environ.get("PULSE_SERVER") or not PAREC:
    skip("no PulseAudio server (run under scripts/with-pulseaudio)")

failures = []


def check(condition, what):
    print(("ok    " if condition else "FAILED ") + what, flush=True)
    if not condition:
        failures.append(what)


class Events:
    """Events of one message with the time each arrived."""

    def __init__(self):
        self.items = []
        self.done = threading.Event()
        self.first_mark = threading.Event()

    def __call__(self, kind, index_mark=None):
        now = time.monotonic()
        if kind == speechd.CallbackType.INDEX_MARK:
            self.items.append(("mark " + index_mark, now))
            self.first_mark.set()
        else:
            self.items.append((kind, now))
        if kind in (speechd.CallbackType.END, speechd.CallbackType.CANCEL):
            self.done.set()

    def names(self):
        return [name for name, _ in self.items]

    def at(self, name):
        return next(t for n, t in self.items if n == name)


EVENT_TYPES = (speechd.CallbackType.BEGIN, speechd.CallbackType.END,
               speechd.CallbackType.CANCEL, speechd.CallbackType.INDEX_MARK)


def speak(client, text, on_first_mark=None):
    events = Events()
    client.speak(text, callback=events, event_types=EVENT_TYPES)
    if on_first_mark:
        if events.first_mark.wait(30):
            on_first_mark()
    events.done.wait(60)
    return events


class Recording:
    """What the default sink plays, as mono 16-bit samples at 22050 Hz, read as it comes."""

    def __init__(self):
        self.samples = array.array("h")
        self.lock = threading.Lock()
        self.process = subprocess.Popen(
            [PAREC, "--raw", "--format=s16le", "--rate=22050", "--channels=1",
             "--latency-msec=10", "-d", "@DEFAULT_MONITOR@"], stdout=subprocess.PIPE)
        self.reader = threading.Thread(target=self._read)
        self.reader.start()
        time.sleep(0.3)

    def _read(self):
        rest = b""
        while True:
            block = self.process.stdout.read1(882)  # up to 10 ms
            if not block:
                return
            block = rest + block
            whole = len(block) // 2 * 2
            rest = block[whole:]
            with self.lock:
                self.samples.frombytes(block[:whole])

    def count(self):
        with self.lock:
            return len(self.samples)

    def sounding(self):
        """Whether the last 20 ms heard were speech."""
        with self.lock:
            return len(loud(self.samples[-441:])) > 40

    def stop(self):
        time.sleep(0.3)
        self.process.terminate()
        self.reader.join()
        self.process.wait()
        return self.samples


def loud(samples, threshold=1500):
    return [s for s in samples if abs(s) > threshold]


def median_f0(samples, window=331, shortest=25, longest=150):
    """Median fundamental frequency (Hz) of the loud, voiced 30 ms windows (every 15 ms, the
    sound halved to 11025 Hz), by autocorrelation: the first lag between 73 and 440 Hz that
    matches nearly as well as the best (placed between lags by a parabola), where the match
    holds half the window's energy."""
    half = [(samples[i] + samples[i + 1]) // 2 for i in range(0, len(samples) - 1, 2)]
    found = []
    for start in range(0, len(half) - window - longest, window // 2):
        block = half[start:start + window + longest]
        energy = sum(s * s for s in block[:window])
        if energy < window * 2000 ** 2:
            continue
        match = [sum(a * b for a, b in zip(block[:window], block[lag:lag + window]))
                 for lag in range(shortest - 1, longest + 1)]
        strongest = max(match)
        # The first peak nearly as strong as the strongest: a period, not a multiple of it.
        i = next((i for i in range(1, len(match) - 1) if match[i] >= 0.85 * strongest
                  and match[i - 1] <= match[i] >= match[i + 1]), 0) if strongest > 0 else 0
        if i and match[i] > energy / 2:
            # The peak between lags, from the parabola through it and its neighbours.
            bend = match[i - 1] - 2 * match[i] + match[i + 1]
            shift = 0.5 * (match[i - 1] - match[i + 1]) / bend if bend < 0 else 0.0
            found.append(11025 / (shortest - 1 + i + shift))
    found.sort()
    return found[len(found) // 2] if found else 0.0


def main():
    module, data_dir = sys.argv[1], sys.argv[2]
    work = tempfile.mkdtemp(prefix="vntts-spd-")
    daemon = None
    try:
        conf = os.path.join(work, "conf")
        os.makedirs(os.path.join(conf, "modules"))
        modules = os.path.join(work, "modules")
        os.makedirs(modules)
        os.symlink(os.path.abspath(module), os.path.join(modules, "sd_vntts"))
        with open(os.path.join(conf, "speechd.conf"), "w") as f:
            f.write('LogLevel 4\nLogDir "%s"\n' % os.path.join(work, "log"))
            f.write('AddModule "vntts" "sd_vntts" "vntts.conf"\nDefaultModule vntts\n')
            f.write('DefaultLanguage "vi"\nAudioOutputMethod "pulse"\n')
        with open(os.path.join(conf, "modules", "vntts.conf"), "w") as f:
            f.write('VnttsDataDirectory "%s"\n' % os.path.abspath(data_dir))
        socket = os.path.join(work, "speechd.sock")
        daemon = subprocess.Popen(
            [DAEMON, "-s", "-t", "0", "-C", conf, "-m", modules, "-S", socket, "-l", "4",
             "-L", os.path.join(work, "log")],
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        for _ in range(100):
            if os.path.exists(socket):
                break
            time.sleep(0.1)
        else:
            check(False, "the daemon opens its socket")
            return

        client = speechd.SSIPClient("vntts-e2e", address="unix_socket:" + socket)
        client.set_output_module("vntts")
        client.set_language("vi")
        client.set_data_mode(speechd.DataMode.SSML)
        check("vntts" in [v[0] for v in client.list_synthesis_voices()],
              "the module lists its voice")

        # Marks in order, each when its place is heard.
        events = speak(client, '<speak>Xin chào <mark name="a"/>các bạn. <mark name="b"/>'
                               'Hôm nay trời đẹp lắm. <mark name="c"/>Tạm biệt.</speak>')
        names = events.names()
        check(names == ["begin", "mark a", "mark b", "mark c", "end"],
              "BEGIN, every mark in order, END: %s" % names)
        if names == ["begin", "mark a", "mark b", "mark c", "end"]:
            spread = events.at("mark c") - events.at("mark a")
            check(spread > 0.8, "marks are reported as their audio plays (a to c: %.2f s)" % spread)

        # STOP in the middle: a cancel event, and the sound ends with it.
        long_text = "<speak>" + " ".join(
            'Câu số %d của một văn bản rất dài. <mark name="m%d"/>' % (i, i) for i in range(30)
        ) + "</speak>"
        stopped = {}
        recording = Recording()

        def stop_while_speech_sounds():
            deadline = time.monotonic() + 10
            while not recording.sounding() and time.monotonic() < deadline:
                time.sleep(0.002)
            stopped["sample"] = recording.count()
            stopped["at"] = time.monotonic()
            client.stop()

        events = speak(client, long_text, on_first_mark=stop_while_speech_sounds)
        samples = recording.stop()
        check(events.names()[-1:] == ["cancel"], "STOP ends the message with a STOP event: %s"
              % events.names()[-3:])
        if "at" in stopped and events.names()[-1:] == ["cancel"]:
            print("figure stop_to_event_ms %.1f" % (1000 * (events.at("cancel") - stopped["at"])))
            # Counted on the recording's own clock: the samples taken in after the stop call
            # until the last loud one (the capture's own 10 ms latency included).
            after = samples[stopped["sample"]:]
            last = max((i for i, s in enumerate(after) if abs(s) > 1500), default=0)
            silence_ms = 1000.0 * last / 22050
            print("figure stop_to_silence_ms %.1f" % silence_ms)
            check(silence_ms < 100, "the sound ends soon after STOP (%.0f ms)" % silence_ms)

        # Rate: twice the pace at 50.
        text = "<speak>Một hai ba bốn năm sáu bảy tám chín mười. Mười một mười hai.</speak>"
        durations = {}
        for rate in (0, 50):
            client.set_rate(rate)
            events = speak(client, text)
            durations[rate] = events.at("end") - events.at("begin")
        client.set_rate(0)
        ratio = durations[50] / durations[0]
        print("figure rate50_duration_ratio %.3f (%.2f s / %.2f s)" % (ratio, durations[50],
                                                                       durations[0]))
        check(0.4 < ratio < 0.65, "rate 50 speaks at about twice the pace (ratio %.2f)" % ratio)

        # Pitch: the voice up by 2^0.5 at 50.
        pitches = {}
        for pitch in (0, 50):
            client.set_pitch(pitch)
            recording = Recording()
            speak(client, text)
            samples = recording.stop()
            pitches[pitch] = median_f0(samples)
            check(len(loud(samples)) > 22050 // 2, "speech was heard at pitch %d" % pitch)
        client.set_pitch(0)
        ratio = pitches[50] / max(pitches[0], 1e-9)
        print("figure pitch50_f0_ratio %.3f (%.1f Hz / %.1f Hz)" % (ratio, pitches[50], pitches[0]))
        check(abs(ratio / 2 ** 0.5 - 1) < 0.05, "pitch 50 raises the voice by 2^0.5 (%.3f)" % ratio)
        client.close()
    finally:
        if daemon:
            daemon.terminate()
            try:
                daemon.wait(10)
            except subprocess.TimeoutExpired:
                daemon.kill()
        if failures:
            log = os.path.join(work, "log")
            for name in sorted(os.listdir(log)) if os.path.isdir(log) else []:
                print("---- " + name)
                with open(os.path.join(log, name), errors="replace") as f:
                    print(f.read()[-4000:])
        shutil.rmtree(work, ignore_errors=True)


main()
sys.exit(1 if failures else 0)
