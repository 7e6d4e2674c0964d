include c.dat
for-d:
	@echo "c after $(IS-D_NAME)"
