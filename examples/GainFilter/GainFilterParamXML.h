#pragma once

// The parameter XML of the example, carried in the module until its bundle resources are read
// through the resource manager. Ids follow the order: 0 "Gain", 1 "Cutoff", 2 "Filter", then the
// two channel trims, which inherit the gain's scale from their parent and are not yet wired to
// the process side.
inline constexpr char kGainFilterParamXML[] = R"(<ParamXML>
  <Parameter Name="Gain">
    <Scale><ScaleType Type="linear"/><Minimum>-24</Minimum><Maximum>12</Maximum>
      <Resolution>0.1</Resolution></Scale>
    <Flags><Drag value="true"/></Flags>
    <InitialValue>0</InitialValue><ResetValue>0</ResetValue>
    <Label>Gain</Label><Units>dB</Units><DisplayFunction>DisplayGainWithDB</DisplayFunction>
  </Parameter>
  <Parameter Name="Cutoff">
    <Scale><ScaleType Type="logarithmic"/><Minimum>20</Minimum><Maximum>20000</Maximum>
      <Resolution>1</Resolution></Scale>
    <InitialValue>1000</InitialValue><ResetValue Type="State">500</ResetValue>
    <Label>Cutoff</Label><Units>Hz</Units><DisplayFunction>DisplayFloat0WithHz</DisplayFunction>
  </Parameter>
  <Parameter Name="Filter">
    <Scale><ScaleType Type="linear"/><Minimum>0</Minimum><Maximum>1</Maximum>
      <NumberOfStates>2</NumberOfStates></Scale>
    <Flags><AlwaysUpdate value="true"/></Flags>
    <InitialValue>1</InitialValue><DisplayFunction>DisplayOnOff</DisplayFunction>
  </Parameter>
  <Parameter Name="Trim" Parent="Gain" ParamArraySize="2">
    <Flags ResetAllFlags="true"><DontRecordUndo value="true"/></Flags>
    <InitialValue>0</InitialValue><Label>Trim</Label>
  </Parameter>
</ParamXML>)";
