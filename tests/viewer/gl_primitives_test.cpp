#include "viewer/gl_primitives.h"

#include <algorithm>
#include <set>

#include <GL/gl.h>
#include <gtest/gtest.h>

#include "fakes/recorder.h"

static Vector Args(const Call &call)
{
    return {call.args[0], call.args[1], call.args[2]};
}

// The segments that line strips and lines have drawn, each from its lesser to its greater end.
static std::set<std::vector<double>> DrawnSegments()
{
    std::set<std::vector<double>> segments;
    double mode = -1;
    std::vector<std::vector<double>> vertices;
    for (const Call &call : calls) {
        if (call.name == "glBegin") {
            mode = call.args[0];
            vertices.clear();
        } else if (call.name == "glVertex3f") {
            vertices.push_back(call.args);
            if (vertices.size() >= 2 && (mode == GL_LINE_STRIP || vertices.size() % 2 == 0)) {
                auto ends = std::minmax(vertices[vertices.size() - 2], vertices.back());
                std::vector<double> segment = ends.first;
                segment.insert(segment.end(), ends.second.begin(), ends.second.end());
                segments.insert(segment);
            }
        }
    }
    return segments;
}

TEST(GLPrimitives, BoxOutlineIsTheTwelveEdges)
{
    for (const int mode : {0, 2}) {
        const double margin = mode == 2 ? 0.05 : 0;
        ForgetCalls();
        CreateBox({0, 0, 0}, {1, 2, 4}, mode);
        const double low[] = {0 - margin, 0 - 2 * margin, 0 - 4 * margin};
        const double high[] = {1 + margin, 2 + 2 * margin, 4 + 4 * margin};
        std::set<std::vector<double>> edges;
        for (int axis = 0; axis < 3; axis++)
            for (int k = 0; k < 4; k++) {
                std::vector<double> edge(6);
                const int b = (axis + 1) % 3, c = (axis + 2) % 3;
                edge[static_cast<size_t>(axis)] = float(low[axis]);
                edge[static_cast<size_t>(axis + 3)] = float(high[axis]);
                edge[static_cast<size_t>(b)] = edge[static_cast<size_t>(b + 3)] =
                    float(k % 2 ? high[b] : low[b]);
                edge[static_cast<size_t>(c)] = edge[static_cast<size_t>(c + 3)] =
                    float(k / 2 ? high[c] : low[c]);
                edges.insert(edge);
            }
        EXPECT_EQ(DrawnSegments(), edges) << mode;
    }
    ForgetCalls();
    CreateBox({0, 0, 0}, {1, 2, 4}, 3);
    EXPECT_TRUE(calls.empty());
}

TEST(GLPrimitives, SolidBoxFacesLookOutward)
{
    ForgetCalls();
    CreateBox({0, 0, 0}, {1, 2, 4}, 1);
    const std::vector<Call> normals = CallsOf("glNormal3f"), vertices = CallsOf("glVertex3f");
    ASSERT_EQ(normals.size(), 6U);
    ASSERT_EQ(vertices.size(), 24U);
    for (size_t face = 0; face < 6; face++) {
        const Vector a = Args(vertices[4 * face]), b = Args(vertices[4 * face + 1]),
                     c = Args(vertices[4 * face + 2]);
        EXPECT_NEAR(VectorLength(CalcNormal(a, b, c), Args(normals[face])), 0, 1e-6) << face;
        EXPECT_GT(DotProduct(a - Vector{0.5, 1, 2}, Args(normals[face])), 0) << face;
    }
}

TEST(GLPrimitives, SphereIsBandsOfUnitNormals)
{
    const Vector centre = {1, 2, 3};
    const struct {
        int n, method, bands, pairs;
        double primitive;
    } rows[] = {{16, 0, 8, 17, GL_QUAD_STRIP},
                {17, 0, 8, 17, GL_QUAD_STRIP},
                {-16, 1, 8, 17, GL_TRIANGLE_STRIP},
                {16, 2, 16, 17, GL_QUAD_STRIP}};
    for (const auto &row : rows) {
        ForgetCalls();
        CreateSimpleSphere(centre, 0.2, row.n, row.method);
        ASSERT_EQ(CountCalls("glBegin"), row.bands);
        EXPECT_EQ(CallsOf("glBegin")[0].args[0], row.primitive);
        ASSERT_EQ(CountCalls("glVertex3f"), row.bands * row.pairs * 2);
        const std::vector<Call> normals = CallsOf("glNormal3f"), vertices = CallsOf("glVertex3f");
        const std::vector<Call> textures = CallsOf("glTexCoord2f");
        double lowest = 9, highest = -9;
        for (size_t i = 0; i < vertices.size(); i++) {
            EXPECT_NEAR(VectorLength(Args(vertices[i]), centre + 0.2 * Args(normals[i])), 0, 1e-6);
            EXPECT_NEAR(Modulus(Args(normals[i])), 1, 1e-6);
            // The texture runs with the latitude.
            EXPECT_NEAR(normals[i].args[1], -std::cos(textures[i].args[1] * kTwoPi / 2), 1e-6);
            lowest = std::min(lowest, vertices[i].args[1]);
            highest = std::max(highest, vertices[i].args[1]);
        }
        EXPECT_NEAR(lowest, 1.8, 1e-6);
        EXPECT_NEAR(highest, 2.2, 1e-6);
    }
    for (const auto &[radius, n] : {std::pair(0.0, 16), std::pair(1.0, 3)}) {
        ForgetCalls();
        CreateSimpleSphere(centre, radius, n, 0);
        EXPECT_EQ(Transcript({"glBegin", "glVertex3f"}), "glBegin(0)\nglVertex3f(1,2,3)\n");
    }
}

TEST(GLPrimitives, ConeIsAClosedStripAboutItsAxis)
{
    for (const Vector tip : {Vector{1, 2, 3}, Vector{0, 5, 0}, Vector{0, -5, 0}, Vector{3, 0, 0}}) {
        ForgetCalls();
        CreateCone({0, 0, 0}, tip, 0.5, 0.25, 0, kTwoPi, 10);
        EXPECT_EQ(Transcript({"glBegin"}), "glBegin(8)\n");
        const std::vector<Call> normals = CallsOf("glNormal3f"), vertices = CallsOf("glVertex3f");
        ASSERT_EQ(vertices.size(), 22U);
        for (size_t i = 0; i < 22; i++) {
            const Vector end = i % 2 == 0 ? Vector{0, 0, 0} : tip;
            const double radius = i % 2 == 0 ? 0.5 : 0.25;
            EXPECT_NEAR(DotProduct(Args(normals[i]), tip), 0, 1e-5);
            EXPECT_NEAR(VectorLength(Args(vertices[i]), end + radius * Args(normals[i])), 0, 1e-6);
        }
        EXPECT_NEAR(VectorLength(Args(vertices[0]), Args(vertices[20])), 0, 1e-6);
        EXPECT_NEAR(VectorLength(Args(vertices[0]), Args(vertices[2])), 2 * 0.5 * std::sin(kTwoPi / 20),
                    1e-6);
    }
    ForgetCalls();
    CreateCone({1, 1, 1}, {1, 1, 1}, 0.5, 0.25, 0, kTwoPi, 10); // no axis: every vertex a finite point
    for (const Call &call : CallsOf("glVertex3f"))
        EXPECT_LE(VectorLength(Args(call), {1, 1, 1}), 0.5);
}
