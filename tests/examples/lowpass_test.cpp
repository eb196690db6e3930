// The low-pass example as a program: what it writes, against a direct sum in double; what it
// refuses, and that nothing half-written stays behind.
#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <complex>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <numbers>
#include <numeric>
#include <random>
#include <set>
#include <sndfile.h>
#include <sstream>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using Arguments = std::vector<std::string>;

struct Recording {
    SF_INFO info{};
    std::vector<double> samples; // interleaved
};

struct Outcome {
    int status = -1; // exit status, or minus the signal
    std::string out, err;
};

std::string contents(const fs::path &path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

class Lowpass : public testing::Test {
protected:
    void SetUp() override {
        std::string name = (fs::temp_directory_path() / "lowpass-XXXXXX").string();
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        folder = name;
        fs::create_directory(folder / "work");
        fs::current_path(folder / "work");
    }
    void TearDown() override {
        fs::current_path("/");
        fs::remove_all(folder);
    }

    template <class Prepare = void (*)()>
    pid_t start(
        const Arguments &arguments, Prepare prepare = [] {}) {
        std::vector<char *> argv{const_cast<char *>("lowpass")};
        for (const auto &a : arguments) argv.push_back(const_cast<char *>(a.c_str()));
        argv.push_back(nullptr);
        const std::string out = folder / "out", err = folder / "err";
        const pid_t child = fork();
        if (child == 0) {
            dup2(open(out.c_str(), O_CREAT | O_TRUNC | O_WRONLY, 0600), 1);
            dup2(open(err.c_str(), O_CREAT | O_TRUNC | O_WRONLY, 0600), 2);
            prepare();
            execv(KEPS_LOWPASS, argv.data());
            _exit(127);
        }
        return child;
    }

    Outcome wait(pid_t child) {
        int status = 0;
        waitpid(child, &status, 0);
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status),
                contents(folder / "out"), contents(folder / "err")};
    }

    Outcome run(const Arguments &arguments) { return wait(start(arguments)); }

    static std::set<std::string> files() {
        std::set<std::string> names;
        for (const auto &entry : fs::directory_iterator(".")) names.insert(entry.path().filename());
        return names;
    }

    fs::path folder;
};

void write(const std::string &path, int format, int rate, int channels,
           const std::vector<double> &samples) {
    SF_INFO info{};
    info.format = format;
    info.samplerate = rate;
    info.channels = channels;
    SNDFILE *file = sf_open(path.c_str(), SFM_WRITE, &info);
    ASSERT_NE(file, nullptr) << sf_strerror(nullptr);
    const auto frames = static_cast<sf_count_t>(samples.size()) / channels;
    ASSERT_EQ(sf_writef_double(file, samples.data(), frames), frames);
    sf_close(file);
}

Recording read(const std::string &path) {
    Recording r;
    SNDFILE *file = sf_open(path.c_str(), SFM_READ, &r.info);
    if (file == nullptr) return r;
    r.samples.resize(static_cast<std::size_t>(r.info.frames * r.info.channels));
    sf_readf_double(file, r.samples.data(), r.info.frames);
    sf_close(file);
    return r;
}

std::vector<double> noise(std::size_t count, double level = 0.25) {
    std::mt19937 source(static_cast<unsigned>(count));
    std::uniform_real_distribution<double> sample(-level, level);
    std::vector<double> samples(count);
    std::generate(samples.begin(), samples.end(), [&] { return sample(source); });
    return samples;
}

// The taps as their definition has them.
std::array<double, 64> tapsOf(double cutoff, double rate) {
    std::array<double, 64> taps;
    for (int i = 0; i < 64; ++i) {
        const double t = i - 31.5, pi = std::numbers::pi;
        taps[static_cast<std::size_t>(i)] =
            std::sin(2 * pi * cutoff / rate * t) / t * (0.54 - 0.46 * std::cos(2 * pi * i / 63));
    }
    const double sum = std::accumulate(taps.begin(), taps.end(), 0.0);
    for (double &tap : taps) tap /= sum;
    return taps;
}

std::vector<double> filtered(const Recording &r, double cutoff) {
    const auto taps = tapsOf(cutoff, r.info.samplerate);
    std::vector<double> result(r.samples.size());
    const auto channels = static_cast<std::size_t>(r.info.channels);
    for (std::size_t i = 0; i < result.size(); ++i)
        for (std::size_t k = 0; k < taps.size() && k * channels <= i; ++k)
            result[i] += taps[k] * r.samples[i - k * channels];
    return result;
}

// How far the taps push white noise down between two frequencies relative to the rate, in dB.
double attenuation(const std::array<double, 64> &taps, double from, double to) {
    constexpr int steps = 2000;
    double sum = 0;
    for (int s = 0; s < steps; ++s) {
        const double f = from + (to - from) * (s + 0.5) / steps;
        std::complex<double> gain = 0;
        for (std::size_t k = 0; k < taps.size(); ++k)
            gain += taps[k] * std::polar(1.0, 2 * std::numbers::pi * f * static_cast<double>(k));
        sum += std::norm(gain);
    }
    return -10 * std::log10(sum / steps);
}

double numberBefore(const std::string &text, const std::string &unit) {
    const auto end = text.find(unit);
    if (end == std::string::npos) return NAN;
    return std::stod(text.substr(text.rfind(' ', end - 1)));
}

TEST_F(Lowpass, FiltersEveryChannelAndKeepsLengthRateAndSampleType) {
    const struct {
        int format, rate, channels, frames, writtenType;
        double step; // of the written sample type; floats are held to the filter's own rounding
    } cases[] = {
        {SF_FORMAT_WAV | SF_FORMAT_PCM_16, 44100, 2, 60000, SF_FORMAT_PCM_16, 0x1p-15},
        {SF_FORMAT_FLAC | SF_FORMAT_PCM_24, 96000, 1, 50001, SF_FORMAT_PCM_24, 0x1p-23},
        {SF_FORMAT_AIFF | SF_FORMAT_PCM_S8, 8000, 1, 20000, SF_FORMAT_PCM_U8, 0x1p-7},
        {SF_FORMAT_WAV | SF_FORMAT_FLOAT, 48000, 3, 3 * 4096, SF_FORMAT_FLOAT, 0},
        {SF_FORMAT_WAV | SF_FORMAT_PCM_32, 48000, 1, 4097, SF_FORMAT_PCM_32, 0},
        {SF_FORMAT_W64 | SF_FORMAT_DOUBLE, 48000, 2, 63, SF_FORMAT_DOUBLE, 0},
        {SF_FORMAT_WAV | SF_FORMAT_PCM_16, 48000, 2, 1, SF_FORMAT_PCM_16, 0x1p-15},
        {SF_FORMAT_OGG | SF_FORMAT_VORBIS, 44100, 1, 30000, SF_FORMAT_FLOAT, 0},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(testing::Message() << std::hex << c.format << std::dec << ", " << c.frames);
        write("in", c.format, c.rate, c.channels,
              noise(static_cast<std::size_t>(c.frames * c.channels)));
        const double cutoff = c.rate / 5.0;
        const Outcome outcome = run({"in", "out.wav", std::to_string(cutoff)});
        EXPECT_EQ(outcome.status, 0) << outcome.out;
        EXPECT_EQ(outcome.err, "");
        const Recording in = read("in"), out = read("out.wav");
        ASSERT_EQ(out.info.frames, in.info.frames);
        EXPECT_EQ(out.info.samplerate, c.rate);
        EXPECT_EQ(out.info.channels, c.channels);
        EXPECT_EQ(out.info.format & SF_FORMAT_SUBMASK, c.writtenType);
        EXPECT_EQ(out.info.format & SF_FORMAT_TYPEMASK, SF_FORMAT_WAV);
        const auto expected = filtered(in, cutoff);
        double worst = 0;
        for (std::size_t i = 0; i < expected.size(); ++i)
            worst = std::max(worst, std::abs(out.samples[i] - expected[i]));
        EXPECT_LE(worst, c.step / 2 + 2e-6);
        // One sample or 63 are too short for the figures, not for the filter.
        const bool isMeasured = c.frames > 4000;
        EXPECT_EQ(contents("out.png").substr(0, 8), isMeasured ? "\x89PNG\r\n\x1a\n" : "");
        EXPECT_EQ(files().size(), isMeasured ? 3u : 2u);
        fs::remove("out.png");
    }
}

TEST_F(Lowpass, MeasuresWhatItDid) {
    write("in.wav", SF_FORMAT_WAV | SF_FORMAT_FLOAT, 48000, 1, noise(480000));
    const Outcome outcome = run({"in.wav", "out.wav", "6000"});
    EXPECT_NEAR(numberBefore(outcome.out, " dB below the input"),
                attenuation(tapsOf(6000, 48000), 6000. / 48000 + 3.5 / 64, 0.5), 0.5)
        << outcome.out;
    EXPECT_LT(numberBefore(outcome.out, " dB (at most 0.5 allowed)"), 0.1) << outcome.out;
    EXPECT_GT(numberBefore(outcome.out, " ns per sample"), 0) << outcome.out;

    // Where the input has nothing above the cut-off there is nothing to measure, and no failure.
    auto tone = noise(48000, 0);
    for (std::size_t i = 0; i < tone.size(); ++i) tone[i] = 0.5 * std::sin(0.01 * double(i));
    write("tone.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 48000, 1, tone);
    const Outcome quiet = run({"tone.wav", "out.wav", "6000"});
    EXPECT_EQ(quiet.status, 0);
    EXPECT_NE(quiet.out.find("too little"), std::string::npos) << quiet.out;
}

TEST_F(Lowpass, RefusesWithOneLineAndWritesNothing) {
    write("in.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 8000, 1, noise(1000));
    write("empty.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 8000, 1, {});
    std::ofstream("text.wav") << "not a recording\n";
    std::ofstream("nothing.wav");
    fs::create_directory("folder");
    fs::create_symlink("in.wav", "link.wav");
    fs::create_hard_link("in.wav", "twin.wav");
    const auto before = files();
    const std::string input = contents("in.wav");
    const struct {
        Arguments arguments;
        const char *says;
    } cases[] = {
        {{}, "usage"},
        {{"in.wav", "out.wav"}, "usage"},
        {{"missing.wav", "out.wav", "1000"}, "missing.wav: No such file"},
        {{"folder", "out.wav", "1000"}, "folder: not a regular file"},
        {{"text.wav", "out.wav", "1000"}, "text.wav: not a recording"},
        {{"nothing.wav", "out.wav", "1000"}, "nothing.wav: not a recording"},
        {{"empty.wav", "out.wav", "1000"}, "empty.wav: the recording is empty"},
        {{"in.wav", "out.wav", "0"}, "cut-off"},
        {{"in.wav", "out.wav", "-5"}, "cut-off"},
        {{"in.wav", "out.wav", "4000"}, "cut-off"},
        {{"in.wav", "out.wav", "nan"}, "cut-off"},
        {{"in.wav", "out.wav", "1k"}, "cut-off \"1k\" is not a number"},
        {{"in.wav", "out.wav", ""}, "cut-off"},
        {{"in.wav", "in.wav", "1000"}, "the output is the input"},
        {{"in.wav", "link.wav", "1000"}, "the output is the input"},
        {{"in.wav", "./twin.wav", "1000"}, "the output is the input"},
        {{"in.wav", "folder", "1000"}, "folder: not a regular file"},
        {{"in.wav", "nowhere/out.wav", "1000"}, "nowhere/out.wav: No such file"},
    };
    for (const auto &c : cases) {
        const Outcome outcome = run(c.arguments);
        EXPECT_EQ(outcome.status, 1) << c.says;
        EXPECT_NE(outcome.err.find(c.says), std::string::npos) << outcome.err;
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
        EXPECT_EQ(outcome.out, "");
        EXPECT_EQ(files(), before);
    }
    EXPECT_EQ(contents("in.wav"), input);
}

TEST_F(Lowpass, LeavesNothingHalfWritten) {
    write("in.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 8000, 1, noise(100000));
    std::ofstream("out.wav") << "as it was";
    const auto before = files();

    // A full disk, in the shape of a limit on what a file may hold.
    Outcome outcome = wait(start({"in.wav", "out.wav", "1000"}, [] {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{65536, 65536};
        setrlimit(RLIMIT_FSIZE, &limit);
    }));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.err.find("cannot write the output"), std::string::npos) << outcome.err;
    EXPECT_EQ(files(), before);
    EXPECT_EQ(contents("out.wav"), "as it was");

    // A recording that ends before its length does.
    write("cut.flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_16, 8000, 1, noise(100000));
    fs::resize_file("cut.flac", fs::file_size("cut.flac") / 2);
    outcome = run({"cut.flac", "out.wav", "1000"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
    fs::remove("cut.flac");
    EXPECT_EQ(files(), before);
    EXPECT_EQ(contents("out.wav"), "as it was");
}

TEST_F(Lowpass, RemovesItsFileWhenInterrupted) {
    // An hour of silence that takes no room on the disk.
    write("in.wav", SF_FORMAT_WAV | SF_FORMAT_FLOAT, 96000, 2, noise(2));
    std::string header = contents("in.wav");
    const std::uint32_t bytes = 96000u * 2 * 4 * 3600;
    header.resize(header.find("data") + 4);
    header.append(reinterpret_cast<const char *>(&bytes), 4);
    std::ofstream("in.wav", std::ios::binary) << header;
    fs::resize_file("in.wav", header.size() + bytes);

    const pid_t child = start({"in.wav", "out.wav", "1000"});
    using namespace std::chrono_literals;
    for (int i = 0; i < 1000 && files().size() == 1; ++i) std::this_thread::sleep_for(10ms);
    ASSERT_EQ(files().size(), 2u) << "the temporary file never came";
    kill(child, SIGTERM);
    const Outcome outcome = wait(child);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "lowpass: interrupted\n");
    EXPECT_EQ(files(), (std::set<std::string>{"in.wav"}));
}

TEST_F(Lowpass, DoesItsWorkWithoutGnuplot) {
    write("in.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 8000, 1, noise(10000));
    const Outcome outcome =
        wait(start({"in.wav", "out.wav", "2000"}, [] { setenv("PATH", "/nowhere", 1); }));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.err.find("gnuplot"), std::string::npos) << outcome.err;
    EXPECT_EQ(read("out.wav").info.frames, 10000);
    EXPECT_EQ(files(), (std::set<std::string>{"in.wav", "out.wav"}));
}

} // namespace
