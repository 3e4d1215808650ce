#include "host/gl/glslSources.h"

namespace VantrelSDK {

namespace {

/// Percentage-closer filtering over n x n taps; a tap counts as lit where the surface is nearer to
/// the light than what the depth map has, and a little.
std::string FlatFilter(int taps, int first, int last) {
    const std::string n = std::to_string(taps), from = std::to_string(first) + ".0",
                      to = std::to_string(last) + ".0";
    return "float filter" + n + "x" + n +
           R"(flat(vec3 st, float d, sampler2D sampler){
  float s = 0.0;
  for(float y = )" +
           from + "; y < " + to +
           R"(; y++)
  {
    float du = y*d;
    for(float x = )" +
           from + "; x < " + to +
           R"(; x++)
    {
      float dv = x*d;
      float z = texture2D(sampler, vec2(st.x + du, st.y + dv) ).r + 0.0015;
      if( st.z < z ){
        s += 1.0;
      }
    }
  }
  return min(s/)" +
           std::to_string(taps * taps) + R"(.0, 1.0);
}
)";
}

const char kNoFilter[] = R"(float noFilter(vec3 st, float d, sampler2D sampler){
  float z = texture2D(sampler, vec2(st.x, st.y) ).r + 0.0015;
  return st.z < z ? 1.0 : 0.0;
}
)";

}  // namespace

const char kBlur8x8[] = R"(float blur8x8flat(vec2 st, float d, sampler2D sampler){
  float x = 0.0;
  float y = 0.0;
  float du = 0.0;
  float dv = 0.0;
  float s = 0.0;
  for(y = -4.0; y < 4.0; y++)
  {
    du = y*d;
    for(x = -4.0; x < 4.0; x++)
    {
      dv = x*d;
      float r = texture2D(sampler, vec2(st.x + du, st.y + dv) ).r;
      s += r;
    }
  }
  s = s/64.0;
  return s;
}
)";

std::string ShadowFilters() {
    return kNoFilter + FlatFilter(2, -1, 1) + FlatFilter(5, -2, 3) + FlatFilter(8, -4, 4) +
           FlatFilter(12, -6, 6) + FlatFilter(18, -9, 9) + kBlur8x8;
}

const char kSurfaceVertex[] = R"(varying vec3 normal;
varying vec3 shuv;
varying vec4 vert;
varying vec4 color;
varying float stencilv;
attribute float stencil;
void main(){
  gl_Position = gl_ModelViewProjectionMatrix * gl_Vertex;
  vert = gl_ModelViewMatrix * gl_Vertex;
  vec4 projCoord = gl_TextureMatrix[0] * vert;
  shuv = (projCoord.xyz / projCoord.w);
  normal   = normalize(gl_NormalMatrix * gl_Normal);
  stencilv = stencil;
  color = gl_Color;
  gl_TexCoord[0] = gl_MultiTexCoord0;
}
)";

const char kSurfaceHeader[] = R"(uniform int useDiffuse;
uniform int useSpecular;
uniform int useSelected;
#ifdef USE_TEXTURE
const int mode = 0;
uniform float texopac;
uniform sampler2D tex;
#else
uniform int mode;
#endif
uniform float opac;
uniform sampler2D shadowTex;
uniform float viewWidth;
uniform float viewHeight;
uniform sampler2D ssaoTex;
uniform sampler2D stencilTex;
uniform float stencilTexOpac;
uniform int useStencil;
uniform int invStencil;
uniform int useColor;
varying vec4 color;
varying vec3 normal;
uniform vec3 lightDir;
varying vec3 shuv;
varying vec4 vert;
varying float stencilv;
)";

const char kSurfaceMain[] = R"(void main(){
  vec3 N = normalize(normal);
  vec3 C = vec3(0.68, 0.65, 0.64);
  vec3 A = vec3(0.24, 0.24, 0.27);
  vec3 Sc = vec3(0.20, 0.20, 0.29);
  float D = max(0.0, dot(N,lightDir));
  D = D*.75+.25;
  D = D * 1.3;
  if ( D > 1.0 ) D = 1.0;
#ifdef USE_TEXTURE
  vec3 tC = texture2D(tex, gl_TexCoord[0].st).rgb;
  C = C*(1.0-texopac) + tC*texopac;
  if(useColor == 1){
    C = C*(1.0-color.a) + color.rgb*color.a;
  }
#else
  if(useColor == 1){
    C = color.rgb;
  }
#endif
  if(mode == 0){
  } else if(mode == 1){
    C *= 0.85; A *= 0.85;
  } else if(mode == 2){
    C *= 0.95; A *= 0.95;
  }
  if(useDiffuse == 0){
    D = 1.0;
  }
  float ssao = 1.0;
#ifdef USE_SSAO
  vec2  uv = gl_FragCoord.xy;
  uv.x /= viewWidth;
  uv.y /= viewHeight;
  ssao = 0.25 + 0.75*blur8x8flat(uv,0.001, ssaoTex);
  ssao *= 1.15;
  if (ssao>1.0) ssao=1.0;
#endif
  float shadow = 1.0;
#ifdef SHADOW_FILTER
  shadow = SHADOW_FILTER(shuv, 0.00097656, shadowTex);
  shadow=shadow*.4+.6;
#endif
  C = D*shadow*C*ssao*(1.0-A)+A*shadow*ssao;
  if(useSpecular != 0){
    vec3 R = reflect(lightDir, N);
    R = -normalize(R);
    vec3 V = normalize(-vert.xyz);
    float RV = dot(V,R);
    float S = pow(RV,4.0)*2.0;
    if (S > 0.45) S = 0.45;
    if(S > 0.0) C += (Sc*S);
  }
  if(useStencil != 0){
    float stv = stencilv;
    if(invStencil != 0) stv = 1.0 - stencilv;
    C.yz *= (1.0 - 0.8*stv);
    C.x *= (1.0 - 0.5*stv);
  }
#ifdef USE_STENCIL_TEX
  float stt = stencilTexOpac*(1.0-texture2D(stencilTex, gl_TexCoord[0].st).r);
  C.xz *= (1.0 - 0.8*stt);
  C.y *= (1.0 - 0.5*stt);
#endif
  if(useSelected == 0){
    C.xyz *= 0.7;
    C.xyz += 0.15;
    C.yz *= 0.9;
  }
  gl_FragColor.xyz = C;
  if(mode == 0)
  gl_FragColor.a = opac;
  else gl_FragColor.a = opac*0.5;
}
)";

const char kOverlayVertex[] = R"(void main(){
  gl_TexCoord[0] = gl_TextureMatrix[0]*gl_MultiTexCoord0;
  gl_Position = gl_ModelViewProjectionMatrix * gl_Vertex;
}
)";

const char kOverlayFragment[] = R"(uniform sampler2D stencilTex;
uniform float opacity;
uniform int colored;
void main(){
  vec4 c = texture2D(stencilTex, gl_TexCoord[0].st );
  if(colored == 1)
  gl_FragColor.xyz = c.xyz;
  else
  gl_FragColor.xyz = vec3(c.r, c.r, c.r);
  gl_FragColor.a = opacity*c.a;
}
)";

const char kDepthVertex[] = R"(uniform float far;
uniform float near;
varying float depth;
void main( void ){
  vec4 viewPos = gl_ModelViewMatrix * gl_Vertex;
  depth = (-viewPos.z - near)/(far - near);
  gl_Position = ftransform();
}
)";

const char kDepthFragment[] = R"(varying float depth;
void main( void )
{
  float R = depth*255.0;
  int   Ri = int(R);
  R = float(Ri);
  float G = depth*255.0 - R;
  R /= 255.0;
  gl_FragColor = vec4(R,G,0.0,depth);
}
)";

std::string FacingVertex(const char* term) {
    return std::string(R"(uniform vec3 dir;
varying float dotvn;
void main(){
  gl_Position = gl_ModelViewProjectionMatrix * gl_Vertex;
  vec3 N   = normalize(gl_NormalMatrix * gl_Normal);
  dotvn   = )") +
           term + ";\n}\n";
}

const char kFacingFragment[] = R"(varying float dotvn;
void main(){
  gl_FragColor.xyz = vec3(dotvn, dotvn, dotvn);
  gl_FragColor.a = 0.5;
}
)";

const char kPlainVertex[] = R"(void main(){
  gl_Position = gl_ModelViewProjectionMatrix * gl_Vertex;
}
)";

const char kOcclusionMaskFragment[] = R"(uniform float viewWidth;
uniform float viewHeight;
uniform sampler2D ssaoTex;
void main(){
  float ssao = 1.0;
  vec2  uv = gl_FragCoord.xy;
  uv.x /= viewWidth;
  uv.y /= viewHeight;
  ssao = blur8x8flat(uv,0.001, ssaoTex);
  ssao *= 1.15;
  if (ssao>1.0) ssao=1.0;
  gl_FragColor.xyz = vec3(ssao, ssao, ssao);
  gl_FragColor.a = 0.5;
}
)";

const char kOcclusionVertex[] = R"(varying vec2  uv;
void main(void)
{
  gl_Position = ftransform();
  gl_Position = sign( gl_Position );
  uv = (vec2( gl_Position.x, gl_Position.y ) + vec2( 1.0 ) ) * 0.5;
}
)";

const char kOcclusionFragment[] = R"(uniform float rad;
uniform sampler2D rnm;
uniform sampler2D normalMap;
uniform int samples;

varying vec2 uv;
void main(void)
{
  int x = 0;
  int y = 0;
  int half_size = samples/2;
  float du = 0.0;
  float dv = 0.0;
  int   nsamp = 0;
  int   close = 0;
  vec4 vd = texture2D(normalMap, uv );
  if(vd.a == 0.0)
  {
    gl_FragColor.r = 0.1;
    return;
  }
  float D = vd.r + vd.g/255.0;
  D -= 0.01;
  for(y = -half_size; y < half_size; y++)
  {
    du = float(y)*rad;
    for(x = -half_size; x < half_size; x++)
    {
      dv = float(x)*rad;
      vec4 zv = texture2D(normalMap, vec2(uv.x + du, uv.y + dv) );
      if(zv.a != 0.0)
      {
        float z = zv.r + zv.g/255.0;
        nsamp++;
        if(D < z)
          close++;
      }
    }
  }
  float ssao = 1.0;
  if(nsamp != 0) ssao = float(close)/float(nsamp);
  gl_FragColor.r = ssao;
}
)";

}  // namespace VantrelSDK
