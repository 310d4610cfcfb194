// The real decoder in its own process, over videos that show four coloured squares for a moment around half a second:
// red and green above blue and white.

#include <gdk-pixbuf/gdk-pixbuf.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <map>

#include "fakes/temporary_folder.h"
#include "platform/linux/child_video_frames.h"
#include "platform/linux/handles.h"

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
  const auto jpeg = decoder().jpegOfFrame(video, 500ms);
  ASSERT_TRUE(jpeg) << jpeg.error().description;
  const auto stream =
      adopt(g_memory_input_stream_new_from_data(jpeg->data(), static_cast<gssize>(jpeg->size()), nullptr));
  const auto picture = adopt(gdk_pixbuf_new_from_stream(stream.get(), nullptr, nullptr));
  ASSERT_TRUE(picture);
  ASSERT_EQ(std::pair(gdk_pixbuf_get_width(picture.get()), gdk_pixbuf_get_height(picture.get())),
            std::pair(width, height));
  const std::map<char, std::array<int, 3>> colours{
      {'R', {0xc0, 0x20, 0x30}}, {'G', {0x20, 0xa0, 0x40}}, {'B', {0x30, 0x40, 0xc0}}, {'W', {0xf0, 0xf0, 0xf0}}};
  for (std::size_t i = 0; i < 4; ++i) {
    const int x = width * (i % 2 == 0 ? 1 : 3) / 4;
    const int y = height * (i < 2 ? 1 : 3) / 4;
    const auto* const pixel =
        gdk_pixbuf_read_pixels(picture.get()) + y * gdk_pixbuf_get_rowstride(picture.get()) + 3 * x;
    for (std::size_t channel = 0; channel < 3; ++channel) {
      EXPECT_NEAR(pixel[channel], colours.at(expected[i])[channel], 4) << expected[i];
    }
  }
}

TEST(VideoFrames, ShowTheVideoAsItIsMeantToBeSeen) {
  const TemporaryFolder folder;
  for (const auto& [filters, options, file, width, height] :
       std::initializer_list<std::tuple<std::string, std::string, const char*, int, int>>{
           {"", "-f lavfi -i sine=duration=1" + h264, "with sound.mov", 160, 96},
           {",scale=out_color_matrix=bt709,format=yuv420p",
            h264 + "-colorspace bt709 -color_primaries bt709 -color_trc bt709 -color_range tv", "HD colours.mp4", 160,
            96},
           {",scale=out_color_matrix=bt601:out_range=pc,format=yuvj420p",
            "-c:v libx264 -colorspace smpte170m -color_primaries smpte170m -color_trc smpte170m -color_range pc",
            "full range.mkv", 160, 96},
           {",scale=161:99:flags=neighbor,setsar=1", "-c:v libvpx-vp9 -pix_fmt yuv420p", "odd size.webm", 161, 99},
           {",setsar=2/1", h264, "wide pixels.mp4", 320, 96},
           {",setsar=1/2", h264, "narrow pixels.mp4", 160, 192},
           {",select='eq(n,0)+eq(n,9)+eq(n,19)'", h264 + "-fps_mode vfr", "irregular times.mp4", 160, 96},
           {",select='lte(n,9)'", h264, "shorter.mp4", 160, 96},
           {"", h264 + "-output_ts_offset 3", "times that start late.ts", 160, 96}}) {
    SCOPED_TRACE(file);
    makeVideo(squares + filters, options, folder.path() / file);
    expectFrame(folder.path() / file, width, height);
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
  std::ofstream(folder.path() / "half.mp4") << movie.substr(0, movie.size() / 2);
  std::ofstream(folder.path() / "text.mp4") << "Not a video at all.";
  std::ofstream(folder.path() / "list.mp4")
      << "#EXTM3U\n#EXT-X-TARGETDURATION:1\n#EXTINF:1,\nfile://" << whole.native() << "\n#EXT-X-ENDLIST\n";
  ASSERT_EQ(mkfifo((folder.path() / "fifo.mp4").c_str(), 0600), 0);
  for (const char* name : {"sound.mp4", "half.mp4", "text.mp4", "list.mp4", "fifo.mp4", "missing.mp4", "."}) {
    const auto jpeg = decoder().jpegOfFrame(folder.path() / name, 500ms);
    ASSERT_FALSE(jpeg) << name;
    EXPECT_EQ(jpeg.error().description.find("too long"), std::string::npos) << name;
  }
}

TEST(VideoFrames, SurviveABrokenDecoderAndLeaveNoProcessBehind) {
  const TemporaryFolder folder;
  const auto helper = folder.path() / "helper";
  const auto started = folder.path() / "started";
  for (const auto& [script, error, limit] :
       std::initializer_list<std::tuple<std::string, const char*, std::chrono::seconds>>{
           {"printf half; kill -SEGV $$", "the decoder crashed", 60s},
           {"printf 'no codec\\nand more'; exit 1", "no codec", 60s},
           {"exec yes", "the decoder sends too much", 60s},
           {"exec >&-; sleep 60", "the decoder takes too long", 1s},
           {"printf half; sleep 60 & echo $! >" + started.native() + "; wait", "the decoder takes too long", 2s}}) {
    std::ofstream(helper) << "#!/bin/sh\n" << script;
    fs::permissions(helper, fs::perms::owner_all);
    const auto jpeg = ChildVideoFrames(helper, limit).jpegOfFrame("/a.mp4", 500ms);
    ASSERT_FALSE(jpeg) << script;
    EXPECT_EQ(jpeg.error().description, error) << script;
  }
  int id = 0;
  ASSERT_TRUE(std::ifstream(started) >> id);
  // It is dead at once, but somebody else waits for it.
  const auto isGone = [&] {
    const std::string status = contentOf("/proc/" + std::to_string(id) + "/stat");
    return status.empty() || status.find(") Z") != std::string::npos;
  };
  const auto end = std::chrono::steady_clock::now() + 10s;
  while (!isGone() && std::chrono::steady_clock::now() < end) continue;
  EXPECT_TRUE(isGone());
}

}  // namespace
}  // namespace tavelle
