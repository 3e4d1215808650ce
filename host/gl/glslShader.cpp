#include "host/gl/glslShader.h"

#include <maya/MGlobal.h>

#include <fstream>
#include <iterator>
#include <vector>

#include "host/gl/GLFunctions.h"

namespace VantrelSDK {

namespace {

bool ReadWhole(const char* path, std::string& text) {
    std::ifstream file(path, std::ios::binary);
    if (!file) return false;
    text.assign(std::istreambuf_iterator<char>(file), {});
    return !file.bad();
}

bool Refuse(const MString& text) {
    MGlobal::displayError(text);
    return false;
}

}  // namespace

glslGenericProgram::glslGenericProgram() {
    AddLight();
}

bool glslGenericProgram::AddLight() {
    if (numLights >= kMaxLights) return false;
    lightDir[numLights] = MVector(0, 0, 1);
    lightPos[numLights] = lightDir[numLights] * -20.0;
    ++numLights;
    return true;
}

bool glslGenericProgram::SetLightDir(int light, const MVector& dir) {
    if (light < 0 || light >= numLights) return false;
    lightDir[light] = dir.normal();
    return true;
}

bool glslGenericProgram::SetLightPos(int light, const MVector& pos) {
    if (light < 0 || light >= numLights) return false;
    lightPos[light] = pos;
    return true;
}

bool glslGenericProgram::LoadShaders() {
    return Load(VertexSource(), FragmentSource());
}

bool glslGenericProgram::LoadShaders(const char* vertFile, const char* fragFile) {
    std::string vertex, fragment;
    if (!ReadWhole(vertFile, vertex))
        return Refuse(MString("Kelmo GLSL: unable to load vertex shader file ") + vertFile);
    if (!ReadWhole(fragFile, fragment))
        return Refuse(MString("Kelmo GLSL: unable to load fragment shader file ") + fragFile);
    return Load(vertex, fragment);
}

bool glslGenericProgram::Load(const std::string& vertex, const std::string& fragment) {
    if (!GLUse()) return false;
    UnLoadShaders();
    vShader = glCreateShader(GL_VERTEX_SHADER);
    fShader = glCreateShader(GL_FRAGMENT_SHADER);
    const bool loaded = [&] {
        if (!compileShader(vShader, kVertex, vertex))
            return Refuse("Kelmo GLSL: can not compile vertex shader\n");
        if (!compileShader(fShader, kFragment, fragment))
            return Refuse("Kelmo GLSL: can not compile fragment shader\n");
        program = glCreateProgram();
        glAttachShader(program, vShader);
        glAttachShader(program, fShader);
        BeforeLink();
        return linkProgram() || Refuse("Kelmo GLSL: can not link program\n");
    }();
    if (!loaded) UnLoadShaders();
    return loaded;
}

void glslGenericProgram::PlaceAttribute(unsigned place, const char* name) {
    if (glBindAttribLocation) glBindAttribLocation(program, place, name);
}

bool glslGenericProgram::compileShader(unsigned shader, Report kind, const std::string& source) {
    const char* text = source.c_str();
    const auto length = static_cast<GLint>(source.size());
    glShaderSource(shader, 1, &text, &length);
    glCompileShader(shader);
    GLint status = 0, size = 0;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &status);
    if (status) return true;
    if (!reported_[kind]) {
        reported_[kind] = true;
        glGetShaderiv(shader, GL_INFO_LOG_LENGTH, &size);
        std::vector<char> log(static_cast<size_t>(size) + 1);
        glGetShaderInfoLog(shader, size, nullptr, log.data());
        MGlobal::displayError(MString("Kelmo GLSL: Compile status: ") + status + "\n\n");
        MGlobal::displayError(MString("Info Log:\n\n") + log.data());
    }
    return false;
}

bool glslGenericProgram::linkProgram() {
    glLinkProgram(program);
    GLint status = 0;
    glGetProgramiv(program, GL_LINK_STATUS, &status);
    if (status) return true;
    if (!reported_[kLink]) {
        reported_[kLink] = true;
        MGlobal::displayError(MString("Kelmo GLSL: Link status: ") + status + "\n\n");
        MGlobal::displayError("Info Log:\n\n" + ProgramLog());
    }
    return false;
}

MString glslGenericProgram::ProgramLog() const {
    GLint size = 0;
    glGetProgramiv(program, GL_INFO_LOG_LENGTH, &size);
    std::vector<char> log(static_cast<size_t>(size) + 1);
    glGetProgramInfoLog(program, size, nullptr, log.data());
    return log.data();
}

void glslGenericProgram::UnLoadShaders() {
    if (!GLUse()) {
        // The context is gone, and with it all names.
        program = vShader = fShader = 0;
        return;
    }
    for (unsigned* shader : {&vShader, &fShader}) {
        if (!*shader) continue;
        if (program) glDetachShader(program, *shader);
        glDeleteShader(*shader);
        *shader = 0;
    }
    if (!program) return;
    glUseProgram(0);
    glDeleteProgram(program);
    program = 0;
}

bool glslGenericProgram::UseProgram() {
    if (!program || !vShader || !fShader) return false;
    glValidateProgram(program);
    GLint valid = 0;
    glGetProgramiv(program, GL_VALIDATE_STATUS, &valid);
    if (!valid) {
        MGlobal::displayError("Kelmo GLSL: program is not valid");
        if (!LoadShaders()) return false;
    }
    glUseProgram(program);
    if (setupUniformVariables()) return true;
    if (!LoadShaders()) return false;
    glUseProgram(program);
    setupUniformVariables();
    return true;
}

void glslGenericProgram::UnUseProgram() {
    if (GLUse()) glUseProgram(0);
}

int glslGenericProgram::Upload::Place(const char* name, const char* missing) {
    const int place = glGetUniformLocation(program_.program, name);
    if (place >= 0) return place;
    failed_ = true;
    if (!program_.reported_[kUniforms]) MGlobal::displayError(missing);
    return -1;
}

void glslGenericProgram::Upload::Float(const char* name, float value, const char* missing) {
    if (const int place = Place(name, missing); place >= 0) glUniform1f(place, value);
}

void glslGenericProgram::Upload::Int(const char* name, int value, const char* missing) {
    if (const int place = Place(name, missing); place >= 0) glUniform1i(place, value);
}

void glslGenericProgram::Upload::Vector(const char* name, const MVector& value,
                                        const char* missing) {
    if (const int place = Place(name, missing); place >= 0)
        glUniform3f(place, static_cast<float>(value.x), static_cast<float>(value.y),
                    static_cast<float>(value.z));
}

int glslGenericProgram::Upload::Attribute(const char* name, const char* missing) {
    const int place = glGetAttribLocation(program_.program, name);
    if (place >= 0) return place;
    failed_ = true;
    if (!program_.reported_[kUniforms]) MGlobal::displayError(missing);
    return -1;
}

bool glslGenericProgram::Upload::Done() {
    if (failed_ && !program_.reported_[kUniforms]) {
        program_.reported_[kUniforms] = true;
        MGlobal::displayError("Info Log:\n\n" + program_.ProgramLog());
    }
    return !failed_;
}

}  // namespace VantrelSDK
