// The word-length example as a program: rounding noise is step^2 / 12, dithered three times that.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <gtest/gtest.h>
#include <random>
#include <sndfile.h>
#include <string>
#include <vector>

namespace {

std::string run(const std::string &arguments) {
    std::FILE *out = popen((std::string(KEPS_WORDLENGTH) + " " + arguments + " 2>&1").c_str(), "r");
    std::string text;
    char line[256];
    while (std::fgets(line, sizeof line, out)) text += line;
    text += "status " + std::to_string(WEXITSTATUS(pclose(out)));
    return text;
}

TEST(Wordlength, MeasuresTheNoiseOfRounding) {
    std::string path = (std::filesystem::temp_directory_path() / "wordlength-XXXXXX").string();
    const int file = mkstemp(path.data());
    SF_INFO info{};
    info.samplerate = 48000;
    info.channels = 1;
    info.format = SF_FORMAT_WAV | SF_FORMAT_FLOAT;
    SNDFILE *out = sf_open_fd(file, SFM_WRITE, &info, SF_TRUE);
    std::minstd_rand random(3);
    std::vector<float> samples(100000);
    for (float &x : samples) x = static_cast<float>(random()) * 0x1p-32f - 0.25f;
    ASSERT_EQ(100000, sf_write_float(out, samples.data(), 100000));
    sf_close(out);

    const std::string text = run(path);
    int bits[3];
    double rounded[3], dithered[3];
    const auto table = text.find("\n");
    ASSERT_EQ(9, std::sscanf(text.c_str() + table, "%d %lf %lf %d %lf %lf %d %lf %lf", &bits[0],
                             &rounded[0], &dithered[0], &bits[1], &rounded[1], &dithered[1],
                             &bits[2], &rounded[2], &dithered[2]))
        << text;
    for (int k = 0; k < 2; ++k) { // at 24 bits the samples' own steps count
        const double step = std::ldexp(1, 1 - bits[k]), noise = 10 * std::log10(step * step / 12);
        EXPECT_NEAR(noise, rounded[k], 0.15) << bits[k];
        EXPECT_NEAR(noise + 10 * std::log10(3), dithered[k], 0.15) << bits[k];
    }
    EXPECT_LT(rounded[2], -140) << text;
    std::filesystem::remove(path);

    const std::string refused = run("/dev/null");
    EXPECT_EQ(1, std::count(refused.begin(), refused.end(), '\n')) << refused;
    EXPECT_NE(std::string::npos, refused.find("status 1")) << refused;
}

} // namespace
