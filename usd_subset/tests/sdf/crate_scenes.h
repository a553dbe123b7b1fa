#pragma once

// Scenes for the tests of the crate format, as text.

namespace sdf_tests {

// Values of every type that attributes can have, single and in arrays, inlined and not.
constexpr char kEveryType[] = R"(
def "Types" {
    bool b = 1
    bool[] bs = [1, 0, 1]
    uchar uc = 200
    uchar[] ucs = [1, 255]
    int i = -7
    int[] is = [1, -2, 3]
    int[] sorted = [0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 100000, -70000, 2147483647]
    uint u = 4000000000
    uint[] us = [1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 4294967295]
    int64 l = -5000000000
    int64 lsmall = 12
    int64[] ls = [1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 5000000000, -9000000000000]
    uint64 ul = 18446744073709551615
    uint64 ulsmall = 9
    uint64[] uls = [1, 2, 18446744073709551615]
    half h = 0.5
    half[] hs = [0.5, 1, 2]
    half[] htable = [0.5, 1, 0.5, 1, 0.5, 1, 0.5, 1, 0.5, 1, 0.5, 1, 0.5, 1, 0.5, 1]
    float f = 0.1
    float[] fs = [0.1, 0.2]
    float[] fints = [0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 1000000]
    float[] ftable = [0.1, 0.2, 0.1, 0.2, 0.1, 0.2, 0.1, 0.2, 0.1, 0.2, 0.1, 0.2, 0.1, 0.2, 0.1, 0.2, 0.1]
    float[] fplain = [0.1, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7, 0.8, 0.9, 1.1, 1.2, 1.3, 1.4, 1.5, 1.6, 1.7, 1.8]
    float[] fnegative = [-0, -0, -0, -0, -0, -0, -0, -0, -0, -0, -0, -0, -0, -0, -0, -0, 1, 2]
    float[] finfinite = [inf, -inf, inf, -inf, inf, -inf, inf, -inf, inf, -inf, inf, -inf, inf, -inf, inf, 0]
    double d = 0.1
    double dsmall = 0.5
    double dhuge = 1e300
    double dzero = -0
    double dinf = -inf
    double[] ds = [0.1, 0.2]
    double[] dints = [0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, -15]
    timecode t = 5
    timecode[] ts = [1, 2.5]
    string s = "a text"
    string[] ss = ["a text", "another", ""]
    token k = "word"
    token[] ks = ["word", "a text"]
    asset a = @./a.png@
    asset[] as = [@./a.png@, @b.png@]
    matrix2d m2 = ((1, 2), (3, 4))
    matrix3d m3 = ((1, 0, 0), (0, 2, 0), (0, 0, -3))
    matrix4d m4 = ((1, 0, 0, 0), (0, 1, 0, 0), (0, 0, 1, 0), (0.5, 2, 3, 1))
    matrix4d[] m4s = [((1, 0, 0, 0), (0, 1, 0, 0), (0, 0, 1, 0), (0, 0, 0, 1))]
    quath qh = (1, 0, 0.5, 0)
    quatf qf = (1, 0, 0, 0)
    quatd qd = (1, 0.1, 0, 0)
    quatf[] qfs = [(1, 0, 0, 0), (0, 1, 0, 0)]
    half2 h2 = (1, 2)
    half3 h3 = (1, 2, 0.5)
    half4 h4 = (1, 2, 3, 4)
    float2 f2 = (1, -128)
    float3 f3 = (1, 2, 128)
    float4 f4 = (0.1, 0.2, 0.3, 0.4)
    float3 fzero = (0, -0, 0)
    double2 d2 = (1, 2)
    double3 d3 = (0.1, 2, 3)
    double4 d4 = (1, 2, 3, 4)
    int2 i2 = (1, 2)
    int3 i3 = (1, 2, 300)
    int4 i4 = (1, 2, 3, -4)
    point3f[] points = [(0, 0, 0), (1.5, 2.5, 3.5)]
    int[] empty = []
    string[] emptyStrings = []
    float blocked = None
}
)";

// Every kind of spec and of metadata.
constexpr char kEveryField[] = R"((
    "a comment"
    customLayerData = {
        dictionary inner = { int a = 1
            dictionary more = { string b = "two" } }
        double[] numbers = [1, 2.5]
    }
    defaultPrim = "World"
    doc = "words"
    endTimeCode = 24
    metersPerUnit = 0.01
    startTimeCode = 1
    subLayers = [ @./a.usda@, @./b.usda@ (offset = 10; scale = 2) ]
    timeCodesPerSecond = 24
    upAxis = "Y"
)

class "_class" {}

def Xform "World" (
    active = true
    apiSchemas = ["CollectionAPI:a"]
    assetInfo = { asset identifier = @./x.usda@ }
    customData = { bool flag = true }
    inherits = </_class>
    instanceable = true
    kind = "component"
    payload = [ @./p.usda@</P> (offset = 5), </_class> ]
    prepend references = [ @./r.usda@</R> (offset = 1; scale = 0.5; customData = { string why = "so" }), </_class> ]
    append references = @./s.usda@
    delete references = @./t.usda@
    specializes = </_class>
    variants = { string look = "red" }
    append variantSets = "look"
) {
    reorder nameChildren = ["B", "A"]
    def "A" (hidden = true) {}
    over "B" {
        custom uniform token kept = "x"
        double size = 2 (
            colorSpace = "raw"
            customData = { int a = 1 }
            doc = "how large"
        )
        double size.timeSamples = { 0: 1, 1.5: 2.5, 2: None, 10: 3 }
        float3[] moves.timeSamples = { 0: [(1, 2, 3)], 1.5: [(1, 2, 3)], 2: [(4, 5, 6)] }
        float in.connect = </World/A.out>
        prepend rel targets = [ </World/A>, </World/A.out> ]
        delete rel targets = </_class>
        rel none = None
        rel one = </World/A>
    }
    variantSet "look" = {
        "red" {
            def Sphere "Ball" { float radius = 2; }
        }
        "blue" (kind = "group") {
            variantSet "size" = {
                "big" {
                    over "Ball" {}
                }
            }
        }
    }
}
)";

} // namespace sdf_tests
