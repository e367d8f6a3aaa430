#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <cstring>
#include <memory>
#include <string>
#include <thread>

#include <benchmark/benchmark.h>

#include "map/drawing/groundpainter.h"
#include "map/drawing/mappicture.h"
#include "streets/file/streetfile.h"
#include "support/inventedcity.h"

namespace {

constexpr QSize Window(1920, 1080);
constexpr int Scales[] = {60, 120, 250, 500, 1000, 1290, 2000, 4000, 9000, 18000};

std::shared_ptr<const streets::StreetMap> city;

const std::shared_ptr<const map::Ground>& ground() {
    static const auto Ground = map::streetGround(city, {});
    return Ground;
}

double scaleOf(const benchmark::State& state) { return static_cast<double>(state.range(0)) / 100; }

void joinStreets(benchmark::State& state) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(map::streetGround(city, {}));
    }
}

/// The picture that follows a window: 256 pixels larger on each side, names and all.
void groundPicture(benchmark::State& state) {
    const map::Camera camera({0, 0}, scaleOf(state),
                             QSizeF(Window.width() + 512, Window.height() + 512));
    map::Stamps stamps(1);
    map::TextWidths widths;
    const auto widthOf = [&](std::string_view text, const map::NameStyle& style) {
        return widths(text, style);
    };
    std::size_t names = 0;
    for (auto _ : state) {
        const auto part = ground()->partIn(camera.seen(40), camera.feetPerPixel());
        QImage image(camera.size().toSize(), QImage::Format_RGB32);
        QPainter painter(&image);
        map::paintGround(painter, part, camera, map::lightTheme());
        const auto placed = map::layNames(part, camera, {}, widthOf);
        map::paintNames(painter, stamps, widths, placed, map::lightTheme());
        names = placed.size();
    }
    state.counters["names"] = static_cast<double>(names);
}

/// A run of so many stops that winds through the city.
map::Scene runOf(int stops) {
    map::DrawnRun run;
    geo::Feet at{-6000, -5000};
    for (int i = 0; i < stops; ++i) {
        const geo::Feet corner{at.x + 500, at.y};
        const geo::Feet next{corner.x, at.y + (i % 2 == 0 ? 900.0 : -500.0)};
        run.stops.push_back({.at = at, .onStreet = at, .number = std::to_string(i + 1)});
        run.legs.push_back({.line = {at, corner, next}, .plate = "2.1"});
        at = i % 25 == 24 ? geo::Feet{-6000, at.y + 400} : next;
    }
    return {.runs = {run}};
}

/// Frames of a window whose map is moved, or zoomed, by a little each time.
void frames(benchmark::State& state, bool zooms) {
    map::MapPicture picture([] {});
    picture.setGround(ground());
    picture.setScene(runOf(static_cast<int>(state.range(1))));
    map::Camera camera({0, 0}, scaleOf(state), Window);
    QImage window(Window, QImage::Format_RGB32);
    const auto paint = [&] {
        QPainter painter(&window);
        picture.paint(painter, camera);
    };
    paint();
    while (!picture.isSettled(camera)) {
        std::this_thread::yield();
    }
    paint();
    int frame = 0;
    for (auto _ : state) {
        ++frame;
        camera = zooms ? camera.zoomedAbout({900, 500}, frame % 2 == 0 ? 1.25 : 0.8)
                       : camera.movedBy({frame % 2 == 0 ? 3.0 : -3.0, 0});
        paint();
    }
}

/// Each leg winds from one side of the city to the other.
map::Scene longRunOf(std::size_t stops) {
    map::DrawnRun run;
    geo::Feet at{-6000, -5000};
    for (std::size_t i = 0; i < stops; ++i) {
        run.stops.push_back({.at = at, .onStreet = at, .number = std::to_string(i + 1)});
        map::DrawnLeg leg{.line = {at}};
        for (int corner = 0; corner < 24; ++corner) {
            at.x += i % 2 == 0 ? 500 : -500;
            leg.line.push_back(at);
            at.y += corner % 2 == 0 ? 400 : -335;
            leg.line.push_back(at);
        }
        at.y -= at.y > 5000 ? 10000 : 0;
        run.legs.push_back(std::move(leg));
    }
    return {.runs = {run}};
}

/// Frames of a window while the middle stop is dragged: its two legs change with each.
void draggedFrames(benchmark::State& state) {
    map::MapPicture picture([] {});
    picture.setGround(ground());
    const map::Camera camera({0, 0}, scaleOf(state), Window);
    QImage window(Window, QImage::Format_RGB32);
    const auto stops = static_cast<std::size_t>(state.range(1));
    int frame = 0;
    const auto drag = [&] {
        map::Scene scene = longRunOf(stops);
        map::DrawnRun& run = scene.runs.front();
        run.legs[stops / 2 - 1].line.back().y += ++frame % 40;
        run.stops[stops / 2].plate = std::to_string(frame % 40);
        run.legs[stops / 2].line.front() = run.legs[stops / 2 - 1].line.back();
        picture.setScene(std::move(scene));
        QPainter painter(&window);
        picture.paint(painter, camera);
    };
    for (int i = 0; i < 5; ++i) {
        drag();
    }
    for (auto _ : state) {
        drag();
    }
}

void registerAll() {
    benchmark::RegisterBenchmark("join_streets", joinStreets)->Unit(benchmark::kMillisecond);
    for (const int scale : Scales) {
        benchmark::RegisterBenchmark("ground_picture", groundPicture)
            ->Arg(scale)
            ->Unit(benchmark::kMillisecond);
        for (const int stops : {20, 150}) {
            benchmark::RegisterBenchmark("frame/dragged", draggedFrames)
                ->Args({scale, stops})
                ->Iterations(60)
                ->Unit(benchmark::kMillisecond);
            for (const bool zooms : {false, true}) {
                benchmark::RegisterBenchmark(
                    zooms ? "frame/zoomed" : "frame/moved",
                    [zooms](benchmark::State& state) { frames(state, zooms); })
                    ->Args({scale, stops})
                    ->Iterations(60)
                    ->Unit(benchmark::kMillisecond);
            }
        }
    }
}

}  // namespace

/// `--streets=FILE` draws a street file. Scales are in hundredths of a foot a pixel.
int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    constexpr const char* Option = "--streets=";
    const std::string last = argc > 1 ? argv[argc - 1] : "";
    if (last.starts_with(Option)) {
        city = std::make_shared<streets::StreetMap>(
            streets::readStreetFile(last.substr(std::strlen(Option))));
        --argc;
    } else {
        city = support::inventedCity(140);
    }
    benchmark::Initialize(&argc, argv);
    registerAll();
    benchmark::RunSpecifiedBenchmarks();
}
