// Each family beside the plain steps it replaces or the least that can be done; times are for 1024 calls or all points.
#include "RkUtilities/geometry/CrkMathUtilities.h"

#include "benchmarks/PlainGeometry.h"

#include <benchmark/benchmark.h>

#include <random>
#include <vector>

namespace {

constexpr std::size_t kCount = 1024;
using Math = CrkMathUtilities;

std::vector<CrkFloatPoint> Points(std::size_t count, float extent) {
    std::mt19937 random(1);
    std::uniform_real_distribution<float> start(0, 1000), step(-extent, extent);
    std::vector<CrkFloatPoint> points;
    while (points.size() < count) {
        points.push_back({start(random), start(random)});
        points.push_back({points.back().x + step(random), points.back().y + step(random)});
    }
    return points;
}

std::vector<CrkFloatRect> Rectangles() {
    std::vector<CrkFloatRect> rectangles;
    for (const CrkFloatPoint& p : Points(kCount, 1000))
        rectangles.push_back({p.x, p.y, 50 + std::fabs(p.y) / 4, 50 + std::fabs(p.x) / 4});
    return rectangles;
}

void ForEachIndex(benchmark::State& state, auto call) {
    for (auto _ : state) {
        for (std::size_t i = 0; i < kCount; ++i) {
            auto result = call(i);
            benchmark::DoNotOptimize(result);
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kCount));
}

void Intersect(benchmark::State& state, auto intersect) {
    const auto r = Rectangles();
    ForEachIndex(state, [&](std::size_t i) {
        CrkFloatRect result;
        const bool meet = intersect(result, r[i], r[(i + 1) % kCount]);
        return std::pair(result, meet);
    });
}
BENCHMARK_CAPTURE(Intersect, plain, plain::Intersect);
BENCHMARK_CAPTURE(Intersect, ours, CrkFloatRect::Intersect);

void CrossLines(benchmark::State& state, auto cross)  // 50: lines of a map, mostly apart; 1000: half of them near
{
    const auto p = Points(2 * kCount + 2, static_cast<float>(state.range(0)));
    ForEachIndex(state, [&](std::size_t i) { return cross(p[2 * i], p[2 * i + 1], p[2 * i + 2], p[2 * i + 3]); });
}
BENCHMARK_CAPTURE(CrossLines, plain, plain::IsLineCrossingLine)->Arg(50)->Arg(1000);
BENCHMARK_CAPTURE(CrossLines, ours, Math::IsLineCrossingLine)->Arg(50)->Arg(1000);

void CrossRectangles(benchmark::State& state, auto cross) {
    const auto p = Points(2 * kCount, static_cast<float>(state.range(0)));
    const auto r = Rectangles();
    ForEachIndex(state, [&](std::size_t i) { return cross(p[2 * i], p[2 * i + 1], r[i]); });
}
BENCHMARK_CAPTURE(CrossRectangles, plain, plain::IsLineCrossingRect)->Arg(50)->Arg(1000);
BENCHMARK_CAPTURE(CrossRectangles, ours, Math::IsLineCrossingRect)->Arg(50)->Arg(1000);

void PointsBounds(benchmark::State& state, auto boundsOf) {
    const auto p = Points(static_cast<std::size_t>(state.range(0)), 1000);
    for (auto _ : state) {
        CrkFloatRect bounds = boundsOf(p.data(), static_cast<int>(state.range(0)));
        benchmark::DoNotOptimize(bounds);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK_CAPTURE(PointsBounds, plain, plain::BoundsOf)->RangeMultiplier(10)->Range(10, 1'000'000);
BENCHMARK_CAPTURE(PointsBounds, ours,
                  [](const CrkFloatPoint* p, int n) { return Math::CalculatePointsBoundingRectangle(p, n); })
    ->RangeMultiplier(10)
    ->Range(10, 1'000'000);

void TransformedBounds(benchmark::State& state, auto boundsOf) {
    const auto r = Rectangles();
    const auto turned = CGAffineTransformRotate(CGAffineTransformMakeTranslation(10, 20), 0.5);
    ForEachIndex(state, [&](std::size_t i) { return boundsOf(r[i], turned); });
}
BENCHMARK_CAPTURE(TransformedBounds, plain, plain::TransformedBounds);
BENCHMARK_CAPTURE(TransformedBounds, ours, Math::CalculateTransformedRectBoundingRectangle);

/// An edge point takes five arc tangents on a rectangle, one square root in an ellipse; one arc tangent is the floor.
void OneAngle(benchmark::State& state) {
    const auto p = Points(kCount, 1000);
    ForEachIndex(state, [&](std::size_t i) { return Math::CalculateAngle(p[i]); });
}
BENCHMARK(OneAngle);

using EdgePoint = CrkFloatPoint (*)(CrkFloatRect, CrkFloatPoint, float);
void EdgePoints(benchmark::State& state, EdgePoint edgePoint) {
    const auto p = Points(kCount, 1000);
    const auto r = Rectangles();
    ForEachIndex(state, [&](std::size_t i) { return edgePoint(r[i], {p[i].x - 500, p[i].y - 500}, 2); });
}
BENCHMARK_CAPTURE(EdgePoints, rectangle, Math::GetRectangleEdgePoint);
BENCHMARK_CAPTURE(EdgePoints, ellipse, Math::GetEllipseEdgePoint);

void Rotate(benchmark::State& state)  // to multiply and add is the floor: 1024 points share one sine and cosine
{
    auto p = Points(kCount, 1000);
    for (auto _ : state) {
        Math::RotatePointsAt(p.data(), static_cast<int>(kCount), 30, {500, 500});
        benchmark::DoNotOptimize(p.data());
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kCount));
}
BENCHMARK(Rotate);

}  // namespace
