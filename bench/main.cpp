// SPDX-License-Identifier: MIT
#include <cstdio>

#include <QApplication>
#include <QGLWidget>
#include <benchmark/benchmark.h>

#if defined(NDEBUG) && defined(__OPTIMIZE__)
static const char *const build = "optimised";
#else
static const char *const build = "NOT OPTIMISED: these numbers say nothing";
#endif

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QGLWidget context;
    context.makeCurrent();
    if (!context.isValid() || !glGetString(GL_RENDERER)) {
        std::fputs("no OpenGL context: the benchmarks need a display with GLX\n", stderr);
        return 1;
    }
    benchmark::AddCustomContext("build", build);
    benchmark::AddCustomContext("renderer",
                                reinterpret_cast<const char *>(glGetString(GL_RENDERER)));
    std::fprintf(stderr, "build: %s\n", build);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
