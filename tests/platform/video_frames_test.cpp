// The real decoder in its own process, over videos that show four coloured squares for a moment around half a second:
// red and green above blue and white.

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <turbojpeg.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <map>

#include "fakes/temporary_folder.h"
#include "platform/linux/child_video_frames.h"

namespace tavelle {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

const std::string squares =
    "color=0xc02030:s=80x48:d=1:r=20[r];color=0x20a040:s=80x48:d=1:r=20[g];color=0x3040c0:s=80x48:d=1:r=20[b];"
    "color=0xf0f0f0:s=80x48:d=1:r=20[w];[r][g]hstack[top];[b][w]hstack[bottom];[top][bottom]vstack,"
    "drawbox=t=fill:c=black:enable='not(between(t,0.42,0.52))',format=gbrp";
const std::string h264 = " -c:v libx264 -pix_fmt yuv420p ";

/// The real decoder. A busy machine may take its time; whoever waits for so long hangs.
ChildVideoFrames decoder() { return ChildVideoFrames(TAVELLE_VIDEO_FRAME, 1min); }

void makeVideo(const std::string& filters, const std::string& options, const fs::path& file) {
  const std::string command =
      "ffmpeg -nostdin -y -loglevel error -f lavfi -i \"" + filters + "\" " + options + " '" + file.native() + "'";
  ASSERT_EQ(std::system(command.c_str()), 0) << command;
}

/// Expects squares of these colours at the top left, top right, bottom left and bottom right.
void expectFrame(const fs::path& video, int width, int height, const std::string& expected = "RGBW") {
  const auto jpeg = decoder().jpegOfFrame(video, std::chrono::milliseconds(500));
  ASSERT_TRUE(jpeg) << jpeg.error().description;
  const auto* bytes = reinterpret_cast<const unsigned char*>(jpeg->data());
  int realWidth = 0;
  int realHeight = 0;
  int sampling = 0;
  int colourSpace = 0;
  const std::unique_ptr<void, decltype(&tjDestroy)> reader(tjInitDecompress(), tjDestroy);
  ASSERT_EQ(tjDecompressHeader3(reader.get(), bytes, jpeg->size(), &realWidth, &realHeight, &sampling, &colourSpace),
            0);
  ASSERT_EQ(std::tuple(realWidth, realHeight, colourSpace), std::tuple(width, height, TJCS_YCbCr));
  std::vector<unsigned char> rgb(static_cast<std::size_t>(3 * width * height));
  ASSERT_EQ(tjDecompress2(reader.get(), bytes, jpeg->size(), rgb.data(), width, 0, height, TJPF_RGB, 0), 0);
  const std::map<char, std::array<int, 3>> colours{
      {'R', {0xc0, 0x20, 0x30}}, {'G', {0x20, 0xa0, 0x40}}, {'B', {0x30, 0x40, 0xc0}}, {'W', {0xf0, 0xf0, 0xf0}}};
  for (std::size_t i = 0; i < 4; ++i) {
    const auto x = static_cast<std::size_t>(width * (i % 2 == 0 ? 1 : 3) / 4);
    const auto y = static_cast<std::size_t>(height * (i < 2 ? 1 : 3) / 4);
    for (std::size_t channel = 0; channel < 3; ++channel) {
      const int seen = rgb[3 * (y * static_cast<std::size_t>(width) + x) + channel];
      EXPECT_NEAR(seen, colours.at(expected[i])[channel], 4) << expected[i];
    }
  }
}

TEST(VideoFrames, ShowTheVideoAsItIsMeantToBeSeen) {
  const struct {
    const char* name;
    std::string filters;
    std::string options;
    const char* file;
    int width;
    int height;
  } rows[] = {
      {"with sound", "", "-f lavfi -i sine=duration=1" + h264, "a.mov", 160, 96},
      {"HD colours", ",scale=out_color_matrix=bt709,format=yuv420p",
       h264 + "-colorspace bt709 -color_primaries bt709 -color_trc bt709 -color_range tv", "a.mp4", 160, 96},
      {"full range", ",scale=out_color_matrix=bt601:out_range=pc,format=yuvj420p",
       "-c:v libx264 -colorspace smpte170m -color_primaries smpte170m -color_trc smpte170m -color_range pc", "a.mkv",
       160, 96},
      {"odd size", ",scale=161:99:flags=neighbor,setsar=1", "-c:v libvpx-vp9 -pix_fmt yuv420p", "a.webm", 161, 99},
      {"wide pixels", ",setsar=2/1", h264, "a.mp4", 320, 96},
      {"narrow pixels", ",setsar=1/2", h264, "a.mp4", 160, 192},
      {"irregular times", ",select='eq(n,0)+eq(n,9)+eq(n,19)'", h264 + "-fps_mode vfr", "a.mp4", 160, 96},
      {"shorter", ",select='lte(n,9)'", h264, "a.mp4", 160, 96},
      {"times that start late", "", h264 + "-output_ts_offset 3", "a.ts", 160, 96},
  };
  const TemporaryFolder folder;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    makeVideo(squares + row.filters, row.options, folder.path() / row.file);
    expectFrame(folder.path() / row.file, row.width, row.height);
  }
}

TEST(VideoFrames, AreTurnedAndMirrored) {
  const TemporaryFolder folder;
  const auto video = folder.path() / "a.mp4";
  makeVideo(squares, h264, video);
  std::string movie = contentOf(video);
  // Behind the name of a track's header: 40 bytes of other fields, then how it is to be shown, a matrix of 3 by 3
  // big-endian numbers, those of interest with 16 bits behind the point (ISO/IEC 14496-12). Across becomes down.
  movie.replace(movie.find("tkhd") + 4 + 40, 20, {0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0});
  std::ofstream(video, std::ios::binary) << movie;
  expectFrame(video, 96, 160, "RBGW");
}

TEST(VideoFrames, AreErrorsWhereThereIsNone) {
  const TemporaryFolder folder;
  const auto whole = folder.path() / "whole.mp4";
  makeVideo(squares, h264, whole);
  makeVideo("sine=duration=1", "-c:a aac", folder.path() / "sound.mp4");
  const std::string movie = contentOf(whole);
  for (const auto& [name, bytes] :
       {std::pair("half.mp4", movie.substr(0, movie.size() / 2)),
        {"text.mp4", "Not a video at all."},
        {"list.mp4", "#EXTM3U\n#EXT-X-TARGETDURATION:1\n#EXTINF:1,\nfile://" + whole.native() + "\n#EXT-X-ENDLIST\n"},
        {"empty.mp4", ""}}) {
    std::ofstream(folder.path() / name) << bytes;
  }
  ASSERT_EQ(mkfifo((folder.path() / "fifo.mp4").c_str(), 0600), 0);
  for (const char* name :
       {"sound.mp4", "half.mp4", "text.mp4", "list.mp4", "empty.mp4", "fifo.mp4", "missing.mp4", "."}) {
    const auto jpeg = decoder().jpegOfFrame(folder.path() / name, std::chrono::milliseconds(500));
    ASSERT_FALSE(jpeg) << name;
    EXPECT_FALSE(jpeg.error().description.empty()) << name;
    EXPECT_EQ(jpeg.error().description.find("too long"), std::string::npos) << name;
  }
}

/// A helper that does what the shell script says.
fs::path makeHelper(const fs::path& folder, const std::string& script) {
  fs::path file = folder / "helper";
  std::ofstream(file) << "#!/bin/sh\n" << script;
  fs::permissions(file, fs::perms::owner_all);
  return file;
}

TEST(VideoFrames, SurviveABrokenDecoder) {
  const TemporaryFolder folder;
  const struct {
    std::string script;
    std::string error;
    std::chrono::milliseconds limit = 1min;
  } rows[] = {{"printf half; kill -SEGV $$", "the decoder crashed"},
              {"printf 'no codec\\nand more'; exit 1", "no codec"},
              {"exec yes", "the decoder sends too much"},
              {"printf half; exec sleep 60", "the decoder takes too long", 100ms},
              {"exec >&-; sleep 60", "the decoder takes too long", 100ms}};
  for (const auto& row : rows) {
    const ChildVideoFrames frames(makeHelper(folder.path(), row.script), row.limit);
    const auto jpeg = frames.jpegOfFrame("/a.mp4", std::chrono::milliseconds(500));
    ASSERT_FALSE(jpeg) << row.script;
    EXPECT_EQ(jpeg.error().description, row.error) << row.script;
  }
}

TEST(VideoFrames, LeaveNoProcessBehind) {
  const TemporaryFolder folder;
  const auto started = folder.path() / "started";
  const auto helper = makeHelper(folder.path(), "sleep 60 & echo $! >" + started.native() + "; wait");
  EXPECT_FALSE(ChildVideoFrames(helper, 2s).jpegOfFrame("/a.mp4", std::chrono::milliseconds(500)));
  std::string id = contentOf(started);
  ASSERT_FALSE(id.empty());
  id.pop_back();
  // It is dead at once, but somebody else waits for it.
  const auto isGone = [&] {
    const std::string status = contentOf("/proc/" + id + "/stat");
    return status.empty() || status.find(") Z") != std::string::npos;
  };
  const auto end = std::chrono::steady_clock::now() + 10s;
  while (!isGone() && std::chrono::steady_clock::now() < end) continue;
  EXPECT_TRUE(isGone());
}

}  // namespace
}  // namespace tavelle
