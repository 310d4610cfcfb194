#include <malloc.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

#include "platform/linux/video_frame/frame_encoder.h"

namespace {

using namespace tavelle;

void limit(__rlimit_resource resource, rlim_t most) {
  rlimit now{};
  if (getrlimit(resource, &now) != 0) return;
  now.rlim_cur = std::min(now.rlim_cur, most);
  now.rlim_max = std::min(now.rlim_max, most);
  setrlimit(resource, &now);
}

/// A video comes from anywhere, and decoders have faults.
void confine() {
  // Whatever becomes of the one who asked, nothing goes on decoding.
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
  limit(RLIMIT_CORE, 0);
  // Seconds on all cores together: several times what fits into the time that somebody waits for the answer.
  limit(RLIMIT_CPU, 60);
#ifndef __SANITIZE_ADDRESS__
  // The sanitizer's shadow memory counts as data, by the terabyte. The largest video in use (8K, 10 bits) needs about
  // half of this.
  limit(RLIMIT_DATA, rlim_t{3} << 30);
#endif
  // One pool of memory for each of many threads would mostly be holes.
  mallopt(M_ARENA_MAX, 2);
}

Result<std::string> jpegOfFrame(const char* path, GstClockTime time) {
  // Opening anything but a file, a FIFO for one, may wait for ever.
  struct stat info {};
  if (stat(path, &info) != 0) return Error{std::strerror(errno)};
  if (!S_ISREG(info.st_mode)) return Error{"not a file"};
  ErrorSlot error;
  if (!gst_init_check(nullptr, nullptr, error.out())) return Error{error.message()};
  const auto frame = decodeFrame(path, time);
  if (!frame) return frame.error();
  return encodeJpeg(*frame);
}

int run(const char* path, GstClockTime time) {
  const auto jpeg = jpegOfFrame(path, time);
  const std::string& answer = jpeg ? *jpeg : jpeg.error().description;
  const bool written =
      std::fwrite(answer.data(), 1, answer.size(), stdout) == answer.size() && std::fflush(stdout) == 0;
  return jpeg && written ? 0 : 1;
}

}  // namespace

/// video-frame PATH NANOSECONDS: writes the video's frame at that time to the standard output, as a JPEG file. When it
/// cannot, it writes why, and ends with status 1.
int main(int count, char** values) {
  GstClockTime time = 0;
  if (count != 3) return 2;
  const std::string_view digits = values[2];
  if (std::from_chars(digits.data(), digits.data() + digits.size(), time).ec != std::errc()) return 2;
  confine();
  // Without the clean-up at exit, which would wait for a decoder that hangs.
  _exit(run(values[1], time));
}
