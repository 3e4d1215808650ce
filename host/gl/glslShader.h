#pragma once

#include <maya/MString.h>
#include <maya/MVector.h>

#include <initializer_list>
#include <string>

namespace VantrelSDK {

/// A program of shaders.
class glslShader {
  public:
    virtual ~glslShader() = default;

    /// Compiles and links. What fails is told once, as an error, and leaves the program unusable.
    virtual bool LoadShaders() = 0;
    virtual void UnLoadShaders() = 0;
    /// Puts it in use and uploads its variables. False for a program that is not loaded, and then
    /// nothing is bound.
    virtual bool UseProgram() = 0;
    virtual void UnUseProgram() = 0;
};

/// What all programs of ours share: a vertex and a fragment shader from texts, up to six
/// directional lights. Setters store; UseProgram uploads.
class glslGenericProgram : public glslShader {
  public:
    static constexpr int kMaxLights = 6;

    /// With one light, along z.
    glslGenericProgram();

    bool LoadShaders() override;
    /// From files, whole.
    bool LoadShaders(const char* vertFile, const char* fragFile);
    void UnLoadShaders() override;
    bool UseProgram() override;
    void UnUseProgram() override;
    bool IsLoaded() const { return program != 0; }

    /// False when there are six.
    bool AddLight();
    /// In the camera's coordinates; normalised. False for a light that is not there.
    bool SetLightDir(int light, const MVector& dir);
    bool SetLightDir(int light, float x, float y, float z) {
        return SetLightDir(light, MVector(x, y, z));
    }
    bool SetLightPos(int light, const MVector& pos);
    const MVector& GetLightDir(int light) const { return lightDir[light]; }
    int GetNumLights() const { return numLights; }

  protected:
    /// Says, before the program is linked, where an attribute is to be.
    void PlaceAttribute(unsigned place, const char* name);
    virtual void BeforeLink() {}
    virtual std::string VertexSource() const = 0;
    virtual std::string FragmentSource() const = 0;
    /// Uploads what the shaders read; whether all of it was found.
    virtual bool setupUniformVariables() = 0;

    /// A variable by name; one that is not there is told, once for the program.
    class Upload {
      public:
        explicit Upload(glslGenericProgram& program) : program_(program) {}
        void Float(const char* name, float value, const char* missing);
        void Int(const char* name, int value, const char* missing);
        void Vector(const char* name, const MVector& value, const char* missing);
        /// The place of an attribute, -1 for none.
        int Attribute(const char* name, const char* missing);
        /// Whether all were found; call it last.
        bool Done();

      private:
        int Place(const char* name, const char* missing);

        glslGenericProgram& program_;
        bool failed_ = false;
    };

    unsigned vShader = 0, fShader = 0, program = 0;
    int numLights = 0;
    MVector lightDir[kMaxLights], lightPos[kMaxLights];

  private:
    enum Report { kVertex, kFragment, kLink, kUniforms };

    bool Load(const std::string& vertex, const std::string& fragment);
    bool compileShader(unsigned shader, Report kind, const std::string& source);
    bool linkProgram();
    MString ProgramLog() const;

    bool reported_[4] = {};
};

}  // namespace VantrelSDK
